// Where the tracks of a song lie in its bytes, also where the lengths of their chunks do not say so.
#pragma once

#include <vector>

#include "prepare/byte_view.h"
#include "prepare/container.h"
#include "prepare/notes.h"
#include "prepare/track_reader.h"

namespace host {

/// @return the tracks in file order, at most 65,535
std::vector<TrackSpan> locateTracks(const ByteView& song, const SongHeader& header, Notes& notes);

} // namespace host
