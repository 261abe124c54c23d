// The view for pipes and files: each line as it becomes complete.
#pragma once

#include <optional>

#include "karaoke/song_view.h"
#include "shared/line_follower.h"

namespace karaoke {

/// Writes to standard output: a title line, then "[m:ss.t] words" as each line becomes complete; of a song
/// without words or chords every fourth bar.
class PipeView final : public SongView {
public:
    void begin(const Desk& desk) override;
    void update() override;
    void finish(bool toItsEnd) override;

private:
    void printLine(std::size_t line);
    void printBar();
    const host::Song& song() const;

    const host::SongControls* m_controls = nullptr;
    std::optional<host::LineFollower> m_follower;
    std::size_t m_next = 0;  ///< first line that was not printed
    std::uint32_t m_bar = 0; ///< last bar that was printed
};

} // namespace karaoke
