// Says precisely why a song file cannot be opened, in the order in which the engine looks.
#include "shared/song_file_check.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "corvmo32.h"
#include "shared/error_texts.h"

namespace host {

namespace {

constexpr std::string_view kHeaderTag = "MThd";
constexpr std::string_view kTrackTag = "MTrk";
constexpr std::string_view kContainerTag = "RIFF";
constexpr std::size_t kTagSize = 4;
constexpr std::size_t kChunkHeadSize = 8;
constexpr std::size_t kHeaderSize = 14;
constexpr std::uint64_t kHeaderLength = 6;
constexpr std::uint64_t kIndependentPatterns = 2;
constexpr std::uint64_t kMaxTracks = 127;
constexpr std::uint64_t kMaxDivision = 960;
constexpr std::uint64_t kFrameTimes =
    0x8000; ///< bit of a division that counts parts of video frames

/// The bytes of a file; what lies beyond its end reads as 0.
class FileBytes {
public:
    explicit FileBytes(std::vector<char> bytes) : m_bytes(std::move(bytes)) {}

    std::uint64_t size() const {
        return m_bytes.size();
    }
    std::uint64_t number(std::uint64_t position, int width) const {
        std::uint64_t value = 0;
        for (int i = 0; i < width; ++i) {
            value = value << 8 | byte(position + static_cast<std::uint64_t>(i));
        }
        return value;
    }
    bool hasTag(std::uint64_t position, std::string_view tag) const {
        for (std::size_t i = 0; i < tag.size(); ++i) {
            if (byte(position + i) != static_cast<unsigned char>(tag[i])) {
                return false;
            }
        }
        return true;
    }

private:
    std::uint64_t byte(std::uint64_t position) const {
        if (position >= m_bytes.size()) {
            return 0;
        }
        return static_cast<unsigned char>(m_bytes[static_cast<std::size_t>(position)]);
    }

    std::vector<char> m_bytes;
};

std::string count(std::uint64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::optional<std::string> faultOfPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return "no such file";
    }
    if (error) {
        return "cannot be opened: " + error.message();
    }
    if (std::filesystem::is_directory(status)) {
        return "is a folder, not a file";
    }
    if (!std::filesystem::is_regular_file(status)) {
        return "is not a regular file";
    }
    return std::nullopt;
}

std::optional<std::string> faultOfHeaderTag(const FileBytes& file) {
    if (file.size() == 0) {
        return "the file is empty";
    }
    if (file.hasTag(0, kContainerTag)) {
        return "not a plain MIDI file: it is wrapped in a RIFF container";
    }
    if (!file.hasTag(0, kHeaderTag)) {
        return "not a MIDI file (it does not begin with \"MThd\")";
    }
    if (file.size() < kHeaderSize) {
        return "cut off: the file ends after " + count(file.size(), "byte") + ", inside its header";
    }
    if (const std::uint64_t length = file.number(kTagSize, 4); length != kHeaderLength) {
        return "damaged: its header says that it is " + count(length, "byte") +
               " long; MIDI files have 6";
    }
    return std::nullopt;
}

std::optional<std::string> faultOfFormat(const FileBytes& file) {
    const std::uint64_t format = file.number(kChunkHeadSize, 2);
    if (format == kIndependentPatterns) {
        return "MIDI format 2 (independent patterns) cannot be played, only formats 0 and 1";
    }
    if (format > kIndependentPatterns) {
        return "damaged: MIDI format " + std::to_string(format) + " does not exist";
    }
    return std::nullopt;
}

std::optional<std::string> faultOfTrackCount(const FileBytes& file) {
    const std::uint64_t tracks = file.number(kChunkHeadSize + 2, 2);
    if (tracks == 0) {
        return "its header says that it has no tracks";
    }
    if (tracks > kMaxTracks) {
        return "too many tracks: " + std::to_string(tracks) + ", at most 127 can be played";
    }
    return std::nullopt;
}

std::optional<std::string> faultOfDivision(const FileBytes& file) {
    const std::uint64_t division = file.number(kChunkHeadSize + 4, 2);
    if ((division & kFrameTimes) != 0) {
        return "its times count video frames (SMPTE), which cannot be played";
    }
    if (division == 0) {
        return "damaged: its header says 0 ticks per quarter note";
    }
    if (division > kMaxDivision) {
        return "its times are too fine: " + std::to_string(division) +
               " ticks per quarter note, at most 960 can be played";
    }
    return std::nullopt;
}

std::optional<std::string> faultOfTracks(const FileBytes& file) {
    const std::uint64_t tracks = file.number(kChunkHeadSize + 2, 2);
    std::uint64_t position = kHeaderSize;
    for (std::uint64_t track = 1; track <= tracks; ++track) {
        const std::string which =
            "track " + std::to_string(track) + " of " + std::to_string(tracks);
        if (position + kTagSize > file.size()) {
            return "cut off: the file ends where " + which + " should begin";
        }
        if (!file.hasTag(position, kTrackTag)) {
            return "damaged: " + which + " does not begin where it should, at byte " +
                   std::to_string(position);
        }
        const std::uint64_t length = file.number(position + kTagSize, 4);
        position += kChunkHeadSize;
        if (position + length > file.size()) {
            const std::uint64_t there = file.size() - std::min(position, file.size());
            return "cut off: " + which + " should have " + count(length, "byte") +
                   ", the file has " + std::to_string(there);
        }
        position += length;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> faultOfSongFile(const std::string& path) {
    if (auto fault = faultOfPath(path)) {
        return fault;
    }
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return std::string("cannot be opened: ") + std::strerror(errno);
    }
    const FileBytes file(
        {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
    for (const auto check :
         {faultOfHeaderTag, faultOfFormat, faultOfTrackCount, faultOfDivision, faultOfTracks}) {
        if (auto fault = check(file)) {
            return fault;
        }
    }
    return std::nullopt;
}

std::string explainSongFailure(const std::string& path, std::uint32_t code) {
    if (code == ENGINE_ERR_ALLOC || code == ENGINE_ERR_LOCK) {
        return errorText(code);
    }
    if (auto fault = faultOfSongFile(path)) {
        return *fault;
    }
    return code == 0 ? "damaged: an event runs past the end of the file" : errorText(code);
}

} // namespace host
