// The songs that are to be played, one after the other.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace desktop {

/// Songs in their order, and the one that is played.
class PlayList {
public:
    /// Adds songs at the end; paths that are there already are added once more.
    void add(const std::vector<std::wstring>& paths);
    /// Takes a song away. The one that plays plays on, but is current no more.
    void remove(std::size_t index);
    void clear();
    /// Moves a song up (-1) or down (1). Answers where it is now.
    std::size_t move(std::size_t index, int direction);

    /// Makes a song the current one.
    void select(std::size_t index);
    std::optional<std::size_t> current() const {
        return m_current;
    }
    /// The song before (-1) or after (1) the current one; the first one when none is current.
    std::optional<std::size_t> neighbour(int direction) const;

    const std::vector<std::wstring>& paths() const {
        return m_paths;
    }

private:
    std::vector<std::wstring> m_paths;
    std::optional<std::size_t> m_current;
};

/// A path's last part, without the ending that says what kind of file it is.
std::wstring songName(const std::wstring& path);

} // namespace desktop
