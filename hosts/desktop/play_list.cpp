// The songs that are to be played.
#include "desktop/play_list.h"

#include <utility>

namespace desktop {

void PlayList::add(const std::vector<std::wstring>& paths) {
    m_paths.insert(m_paths.end(), paths.begin(), paths.end());
}

void PlayList::remove(std::size_t index) {
    if (index >= m_paths.size()) {
        return;
    }
    m_paths.erase(m_paths.begin() + static_cast<std::ptrdiff_t>(index));
    if (m_current == index) {
        m_current.reset();
    } else if (m_current && *m_current > index) {
        --*m_current;
    }
}

void PlayList::clear() {
    m_paths.clear();
    m_current.reset();
}

std::size_t PlayList::move(std::size_t index, int direction) {
    const std::size_t target = direction < 0 ? index - 1 : index + 1;
    if (index >= m_paths.size() || target >= m_paths.size()) {
        return index;
    }
    std::swap(m_paths[index], m_paths[target]);
    if (m_current == index) {
        m_current = target;
    } else if (m_current == target) {
        m_current = index;
    }
    return target;
}

void PlayList::select(std::size_t index) {
    if (index < m_paths.size()) {
        m_current = index;
    }
}

std::optional<std::size_t> PlayList::neighbour(int direction) const {
    if (m_paths.empty()) {
        return std::nullopt;
    }
    if (!m_current) {
        return 0;
    }
    // Before the first lies a number beyond all others.
    const std::size_t index = direction < 0 ? *m_current - 1 : *m_current + 1;
    return index < m_paths.size() ? std::optional(index) : std::nullopt;
}

std::wstring songName(const std::wstring& path) {
    const std::size_t slash = path.find_last_of(L"\\/");
    const std::wstring name = slash == std::wstring::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of(L'.');
    return dot == std::wstring::npos || dot == 0 ? name : name.substr(0, dot);
}

} // namespace desktop
