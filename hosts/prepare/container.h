// Where in a file the song begins and ends, and what its header says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "prepare/byte_view.h"
#include "prepare/notes.h"

namespace host {

/// The header's fields as they stand.
struct SongHeader {
    std::uint16_t format = 0;
    std::uint16_t trackCount = 0;
    std::uint16_t division = 0;
    std::size_t end = 0; ///< position behind the header
};

/// Takes the song out of what wraps it or stands before it.
/// @return the bytes from the song's "MThd" on; none = there is no song
std::span<const std::uint8_t> findSong(std::span<const std::uint8_t> file, Notes& notes);

/// @param song   begins with "MThd"
/// @param error  receives the reason when the header is not whole
SongHeader readHeader(const ByteView& song, Notes& notes, std::string& error);

/// Whether a chunk that is no track, with a name of four printable characters, stands whole at a position.
bool isForeignChunk(const ByteView& song, std::size_t position);

} // namespace host
