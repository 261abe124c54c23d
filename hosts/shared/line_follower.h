// Which line of a song to look at: what the engine has announced, and when the next line is due.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/lyric_lines.h"
#include "shared/timeline.h"

namespace host {

/// Follows a song by the engine's announcements and position. One object follows one playing of the song.
class LineFollower {
public:
    /// @param lines     the song's lines, or parts of them; must outlive the follower
    /// @param timeline  the song's times
    LineFollower(const std::vector<Line>& lines, const Timeline& timeline);

    /// A lyric or chord of the engine's tables was announced; -1 = none yet.
    void lyric(int index);
    void chord(int index);
    /// The song was moved: these were the last ones before the new position.
    void jumpTo(int lyric, int chord) {
        m_lyric = lyric;
        m_chord = chord;
    }
    int lastLyric() const {
        return m_lyric;
    }
    int lastChord() const {
        return m_chord;
    }

    bool sung(const Syllable& syllable) const {
        return syllable.lyric <= m_lyric;
    }
    bool played(const Chord& chord) const {
        return chord.index <= m_chord;
    }
    /// Whether everything of a line was announced, or anything of a later line.
    bool complete(std::size_t line) const;

    /// The line to show at a position: the one that is sung, or the next one shortly before it begins.
    std::size_t lineAt(std::uint32_t tick) const;

private:
    bool begun(const Line& line) const;
    bool allAnnounced(const Line& line) const;

    const std::vector<Line>& m_lines;
    const Timeline& m_timeline;
    std::vector<double> m_handover; ///< seconds from which a line is shown before it begins
    int m_lyric = -1;
    int m_chord = -1;
};

} // namespace host
