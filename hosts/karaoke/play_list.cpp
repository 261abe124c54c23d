// The songs of `karaoke play`, one after the other.
#include "karaoke/play_list.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <random>
#include <string_view>

#include "shared/error_texts.h"

namespace karaoke {

namespace {

namespace fs = std::filesystem;

bool isSong(const fs::path& path) {
    constexpr std::array<std::string_view, 5> kEndings = {".mid", ".midi", ".kar", ".rmi", ".smf"};
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::find(kEndings.begin(), kEndings.end(), ending) != kEndings.end();
}

std::vector<std::string> songsIn(const std::string& folder) {
    std::vector<std::string> songs;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (isSong(entry->path()) && entry->is_regular_file(ignored)) {
            songs.push_back(entry->path().string());
        }
    }
    if (songs.empty()) {
        throw host::SongError(folder, error ? "cannot be read: " + error.message()
                                            : "there is no song in this folder");
    }
    std::sort(songs.begin(), songs.end());
    return songs;
}

} // namespace

PlayList::PlayList(const PlayOptions& options) : m_repeat(options.repeat) {
    for (const std::string& name : options.files) {
        std::error_code error;
        if (fs::is_directory(name, error)) {
            const std::vector<std::string> songs = songsIn(name);
            m_files.insert(m_files.end(), songs.begin(), songs.end());
        } else {
            m_files.push_back(name);
        }
    }
    if (options.shuffle) {
        std::shuffle(m_files.begin(), m_files.end(), std::mt19937(std::random_device()()));
    }
}

bool PlayList::move(int steps) {
    if (steps < 0) {
        m_place -= m_place == 0 ? 0 : 1;
        return true;
    }
    if (m_place + 1 < m_files.size()) {
        ++m_place;
        return true;
    }
    m_place = 0;
    return m_repeat;
}

} // namespace karaoke
