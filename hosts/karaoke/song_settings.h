// Puts a user's wishes into a player that holds a song.
#pragma once

#include "corvmo32.h"
#include "karaoke/play_options.h"
#include "shared/song.h"

namespace karaoke {

/// Settings that must be in force before the set-up is sent; between mm_Open and mm_PlayFirstNote.
void applySettings(HMIDIOUT player, const PlayOptions& options);

/// What the song's own set-up has not brought about, and the fades; between mm_PlayFirstNote and
/// mm_StartSync.
void completeSettings(HMIDIOUT player, const PlayOptions& options, const host::Song& song);

} // namespace karaoke
