// Reads song files, has them mended, and finds the engine a path that it can open.
#include "shared/song_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#endif

#include "prepare/prepare_song.h"

namespace host {

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

void throwFaultOfPath(const fs::path& path, const std::string& name) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) {
        throw SongError(name, "no such file");
    }
    if (error) {
        throw SongError(name, "cannot be opened: " + error.message());
    }
    if (fs::is_directory(status)) {
        throw SongError(name, "is a folder, not a file");
    }
    if (!fs::is_regular_file(status)) {
        throw SongError(name, "is not a regular file");
    }
}

Bytes readFile(const fs::path& path, const std::string& name) {
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw SongError(name, std::string("cannot be opened: ") + std::strerror(errno));
    }
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        throw SongError(name, "cannot be read to its end");
    }
    return bytes;
}

/// FNV-1a.
std::uint64_t fingerprintOf(const Bytes& bytes) {
    constexpr std::uint64_t kStart = 0xCBF29CE484222325;
    constexpr std::uint64_t kPrime = 0x100000001B3;
    std::uint64_t fingerprint = kStart;
    for (const std::uint8_t byte : bytes) {
        fingerprint = (fingerprint ^ byte) * kPrime;
    }
    return fingerprint;
}

/// Whether the engine, which takes the system's narrow paths, reads this one as it is meant.
bool enginePathFits(const fs::path& path) {
#ifdef _WIN32
    const std::wstring& text = path.native();
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c > 0 && c < 0x80; });
#else
    static_cast<void>(path);
    return true;
#endif
}

#ifdef _WIN32
/// A person's name in the path of the temporary folder need not be ASCII; its short form is.
fs::path temporaryRoot() {
    const fs::path usual = fs::temp_directory_path();
    std::wstring brief(MAX_PATH, L'\0');
    const DWORD length =
        GetShortPathNameW(usual.c_str(), brief.data(), static_cast<DWORD>(brief.size()));
    brief.resize(length < brief.size() ? length : 0);
    const wchar_t* const everyones = _wgetenv(L"PUBLIC");
    for (const fs::path& root : {usual, fs::path(brief), fs::path(everyones ? everyones : L"")}) {
        if (!root.empty() && enginePathFits(root)) {
            return root;
        }
    }
    return usual;
}
#else
fs::path temporaryRoot() {
    return fs::temp_directory_path();
}
#endif

/// A folder that nobody had before, readable by its owner alone.
fs::path makeFolder() {
    constexpr int kAttempts = 100;
    std::random_device random;
    const fs::path root = temporaryRoot();
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        fs::path folder = root / ("corvmo32-" + std::to_string(random()));
        if (fs::create_directory(folder)) {
            fs::permissions(folder, fs::perms::owner_all);
            return folder;
        }
    }
    throw fs::filesystem_error("no free name", root, std::make_error_code(std::errc::file_exists));
}

} // namespace

/// A file in a folder of its own; both go with the object.
class SongFile::TemporaryFile {
public:
    explicit TemporaryFile(const Bytes& bytes) : m_folder(makeFolder()) {
        std::ofstream file(path(), std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file) {
            remove();
            throw fs::filesystem_error("not enough room", path(),
                                       std::make_error_code(std::errc::io_error));
        }
    }
    ~TemporaryFile() {
        remove();
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    fs::path path() const {
        return m_folder / "song.mid";
    }

private:
    void remove() const noexcept {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    fs::path m_folder;
};

std::string textOf(const fs::path& path) {
#ifdef _WIN32
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
#else
    return path.native();
#endif
}

fs::path pathOf(const std::string& text) {
#ifdef _WIN32
    return std::u8string(text.begin(), text.end());
#else
    return text;
#endif
}

SongFile::SongFile(const fs::path& path) : m_name(textOf(path)) {
    throwFaultOfPath(path, m_name);
    const Bytes file = readFile(path, m_name);
    PreparedSong prepared = prepareSong(file);
    if (!prepared.error.empty()) {
        throw SongError(m_name, prepared.error);
    }
    m_notes = std::move(prepared.notes);
    m_fingerprint = fingerprintOf(file);
    if (!prepared.changed && enginePathFits(path)) {
        m_enginePath = m_name;
        return;
    }
    try {
        m_temporary = std::make_unique<TemporaryFile>(prepared.bytes);
    } catch (const fs::filesystem_error& error) {
        throw SongError(m_name, std::string("no temporary file can be made: ") + error.what());
    }
    m_enginePath = textOf(m_temporary->path());
}

SongFile::SongFile(SongFile&&) noexcept = default;
SongFile& SongFile::operator=(SongFile&&) noexcept = default;
SongFile::~SongFile() = default;

std::string mendedInOneLine(const std::vector<std::string>& notes) {
    if (notes.empty()) {
        return {};
    }
    std::string line = "mended: " + notes.front();
    if (notes.size() > 1) {
        line += ", and " + std::to_string(notes.size() - 1) + " more";
    }
    return line;
}

} // namespace host
