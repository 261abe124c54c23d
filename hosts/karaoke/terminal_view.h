// The view for terminals: chords, the line that is sung, the next line and the position, redrawn in place.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "karaoke/song_view.h"
#include "karaoke/terminal.h"
#include "shared/line_follower.h"

namespace karaoke {

class TerminalView final : public SongView {
public:
    void begin(const host::Song& song) override;
    void lyric(int index) override;
    void chord(int index) override;
    void position(std::uint32_t tick) override;
    void finish(bool toItsEnd) override;
    void suspend() override;
    void resume() override;
    void abandon() override;

private:
    /// One row of the screen and the columns that it takes.
    struct Row {
        std::string text;
        int columns = 0;
    };

    void fitTo(const TerminalSize& size);
    std::vector<Row> compose(std::uint32_t tick) const;
    Row chordRow(const host::Line& line) const;
    Row wordRow(const host::Line& line) const;
    Row nextRow(const host::Line& line) const;
    Row statusRow(std::uint32_t tick) const;
    void draw(const std::vector<Row>& rows);
    std::string toFirstRow() const;

    Terminal m_terminal;
    TerminalSize m_size{0, 0};
    const host::Song* m_song = nullptr;
    std::vector<host::Line> m_lines; ///< the song's lines, wrapped to the terminal's width
    std::optional<host::LineFollower> m_follower;
    std::vector<Row> m_drawn;
    std::uint32_t m_tick = 0;
};

} // namespace karaoke
