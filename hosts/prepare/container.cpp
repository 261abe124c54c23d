// Where in a file the song begins and ends, and what its header says.
#include "prepare/container.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace host {

namespace {

constexpr std::string_view kContainerTag = "RIFF";
constexpr std::string_view kDataTag = "data";
constexpr std::size_t kContainerHeadSize = 12; ///< tag, size, kind of contents
constexpr std::size_t kHeaderSize = 14;
constexpr std::uint32_t kHeaderLength = 6;
constexpr std::size_t kSmallestSong = kHeaderSize + kChunkHeadSize;
constexpr std::size_t kMostJunk = 65536; ///< a song is looked for so far into a file

bool isTag(const ByteView& bytes, std::size_t position) {
    bool letters = false;
    for (std::size_t i = 0; i < kTagSize; ++i) {
        const int byte = bytes[position + i];
        if (byte < ' ' || byte > '~') {
            return false;
        }
        letters = letters || std::isalpha(byte) != 0;
    }
    return letters;
}

/// The end of a data chunk whose size can be believed, otherwise the end of the file.
std::size_t endOfContents(const ByteView& file, std::size_t contents, std::uint32_t size) {
    const std::uint64_t end = ByteView::endOf(contents, size);
    if (size < kSmallestSong || end > file.size()) {
        return file.size();
    }
    const auto position = static_cast<std::size_t>(end);
    const std::size_t even = position + (size & 1);
    const bool believed = even >= file.size() || isTag(file, even) || isTag(file, position);
    return believed ? position : file.size();
}

/// Looks for the data chunk of a RIFF container; containers in containers are followed down, always
/// onwards through the file.
std::optional<std::span<const std::uint8_t>> unwrap(const ByteView& file) {
    std::uint64_t position = kContainerHeadSize;
    while (position + kChunkHeadSize <= file.size()) {
        const auto chunk = static_cast<std::size_t>(position);
        const std::size_t contents = chunk + kChunkHeadSize;
        const std::uint32_t size = file.littleEndian(chunk + kTagSize, 4);
        if (file.hasTag(chunk, kDataTag) && file.hasTag(contents, kHeaderTag)) {
            return file.part(contents, endOfContents(file, contents, size));
        }
        if (file.hasTag(chunk, kContainerTag)) {
            position = chunk + kContainerHeadSize;
        } else if (file.hasTag(chunk, kDataTag) && file.hasTag(contents, kContainerTag)) {
            position = contents + kContainerHeadSize;
        } else {
            position = ByteView::endOf(contents, size) + (size & 1);
        }
    }
    return std::nullopt;
}

/// Behind a header whose length is not what it should be.
std::size_t endOfOddHeader(const ByteView& song, std::uint32_t length, Notes& notes) {
    const std::uint64_t end = ByteView::endOf(kChunkHeadSize, length);
    if (length > kHeaderLength && end < song.size() && !song.hasTag(kHeaderSize, kTrackTag)) {
        const auto position = static_cast<std::size_t>(end);
        if (song.hasTag(position, kTrackTag) || isForeignChunk(song, position)) {
            notes.add("the header was " + countOf(length - kHeaderLength, "byte") +
                      " longer than it should be; they were left out");
            return position;
        }
    }
    notes.add("the header gave a wrong length of its own (" + std::to_string(length) + ")");
    return kHeaderSize;
}

} // namespace

bool isForeignChunk(const ByteView& song, std::size_t position) {
    return isTag(song, position) && !song.hasTag(position, kTrackTag) &&
           ByteView::endOf(position + kChunkHeadSize, song.number(position + kTagSize, 4)) <=
               song.size();
}

std::span<const std::uint8_t> findSong(std::span<const std::uint8_t> bytes, Notes& notes) {
    const ByteView file(bytes);
    if (file.hasTag(0, kHeaderTag)) {
        return bytes;
    }
    if (file.hasTag(0, kContainerTag)) {
        if (const auto song = unwrap(file)) {
            notes.add("the song was wrapped in a RIFF container and taken out of it");
            return *song;
        }
    }
    const std::size_t end = std::min(file.size(), kMostJunk + kTagSize);
    const std::size_t start = file.find(kHeaderTag, 0, end);
    if (start == end) {
        return {};
    }
    notes.add(countOf(start, "byte") + " before the song's beginning were left out");
    return file.part(start, file.size());
}

SongHeader readHeader(const ByteView& song, Notes& notes, std::string& error) {
    SongHeader header;
    if (song.size() < kHeaderSize) {
        error = "cut off: the file ends inside its header";
        return header;
    }
    const std::uint32_t length = song.number(kTagSize, 4);
    header.format = static_cast<std::uint16_t>(song.number(kChunkHeadSize, 2));
    header.trackCount = static_cast<std::uint16_t>(song.number(kChunkHeadSize + 2, 2));
    header.division = static_cast<std::uint16_t>(song.number(kChunkHeadSize + 4, 2));
    header.end = length == kHeaderLength ? kHeaderSize : endOfOddHeader(song, length, notes);
    return header;
}

} // namespace host
