// The view for terminals: chords, the line that is sung, the next line and the position, redrawn in place.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "karaoke/key_input.h"
#include "karaoke/shown_words.h"
#include "karaoke/song_view.h"
#include "karaoke/terminal.h"

namespace karaoke {

class TerminalView final : public SongView {
public:
    void begin(const Desk& desk) override;
    void update() override;
    void finish(bool toItsEnd) override;
    Key key() override {
        return m_keys.next();
    }
    void report(const std::string& message) override;
    void suspend() override;
    void resume() override;
    void abandon() override;

private:
    /// One row of the screen and the columns that it takes.
    struct Row {
        std::string text;
        int columns = 0;
    };

    std::vector<Row> compose() const;
    Row chordRow(const host::Line& line) const;
    Row wordRow(const host::Line& line) const;
    Row nextRow(const host::Line& line) const;
    Row statusRow() const;
    void draw(const std::vector<Row>& rows);
    std::string toFirstRow() const;

    Terminal m_terminal;
    TerminalSize m_size{0, 0};
    const Desk* m_desk = nullptr;
    std::optional<ShownWords> m_words;
    KeyInput m_keys;
    std::vector<Row> m_drawn;
};

} // namespace karaoke
