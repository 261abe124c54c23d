// The words of a song as a view shows them now: wrapped to its width, with the line to look at.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "shared/line_follower.h"
#include "shared/song_controls.h"

namespace karaoke {

class ShownWords {
public:
    /// Follows a song from where it stands.
    /// @param controls  hold the song; must outlive this
    explicit ShownWords(const host::SongControls& controls) : m_controls(controls) {}

    /// Catches up with the song. To be called before anything is shown.
    /// @param columns  that a line may take
    void update(int columns);

    const std::vector<host::Line>& lines() const {
        return m_lines;
    }
    const host::LineFollower& follower() const {
        return *m_follower;
    }
    /// Index of the line to look at; there must be lines.
    std::size_t current() const;
    /// Beats to count before that line begins, 4 to 1; 0 = none.
    int countIn() const;
    /// Seconds until the next words, in a pause that is worth telling; 0 = none.
    double pause() const;

private:
    void fit(int columns);
    /// The first line of which nothing was sung.
    std::size_t coming() const;

    const host::SongControls& m_controls;
    int m_columns = 0;
    float m_percent = 0;
    std::string m_encoding;
    std::vector<host::Line> m_lines;
    std::optional<host::LineFollower> m_follower;
};

/// Column of each syllable of a line, and of the line's end.
std::vector<int> syllableColumns(const host::Line& line);

} // namespace karaoke
