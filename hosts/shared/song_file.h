// A song's file on its way to the engine: read, mended where it has to be, and put where the engine can open
// it. Every host reads songs through this.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "shared/error_texts.h"

namespace host {

/// A path as text: the bytes of the name as they stand, UTF-8 on Windows.
std::string textOf(const std::filesystem::path& path);
/// The path of such a text.
std::filesystem::path pathOf(const std::string& text);

/// A file that the engine can be asked to open while this lives.
class SongFile {
public:
    /// Reads and mends the file. Opens nothing of the engine.
    /// @throws SongError  it is missing, a folder, unreadable, or no song that can be mended; or the mended
    ///                    song cannot be written
    explicit SongFile(const std::filesystem::path& path);
    SongFile(SongFile&&) noexcept;
    SongFile& operator=(SongFile&&) noexcept;
    ~SongFile();

    /// The file that was named, for people.
    const std::string& name() const {
        return m_name;
    }
    /// What mm_Open and mm_Scan are handed: the file itself, or a temporary one that vanishes with this.
    const std::string& enginePath() const {
        return m_enginePath;
    }
    /// What was mended, a line each; empty = nothing had to be.
    const std::vector<std::string>& notes() const {
        return m_notes;
    }
    /// A number that the same bytes always have, wherever the file lies.
    std::uint64_t fingerprint() const {
        return m_fingerprint;
    }

private:
    class TemporaryFile;

    std::string m_name;
    std::string m_enginePath;
    std::vector<std::string> m_notes;
    std::uint64_t m_fingerprint = 0;
    std::unique_ptr<TemporaryFile> m_temporary;
};

/// The notes of a mending in one line: the first of them and how many follow. Empty without notes.
std::string mendedInOneLine(const std::vector<std::string>& notes);

} // namespace host
