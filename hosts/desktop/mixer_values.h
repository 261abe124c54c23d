// What the mixer's cells show and set: the song's values with the listener's offsets.
#pragma once

#include "desktop/mixer_layout.h"
#include "shared/playing_state.h"
#include "shared/song_settings.h"

namespace desktop {

constexpr int kMostValue = 127; ///< of a controller

/// What a channel's controller is at, 0 to 127. Volume, Pan, Reverb or Chorus.
int shownValue(MixerCell cell, const host::ChannelActivity& activity,
               const host::ChannelSettings& settings);

/// The settings with which the cell shows a value.
host::ChannelSettings withValue(MixerCell cell, int value, const host::ChannelActivity& activity,
                                host::ChannelSettings settings);

/// The settings after a cell was stepped, toggled or put back to what the song has.
host::ChannelSettings stepped(MixerCell cell, int step, const host::ChannelActivity& activity,
                              const host::ChannelSettings& settings);
host::ChannelSettings toggled(MixerCell cell, host::ChannelSettings settings);
host::ChannelSettings asWritten(MixerCell cell, host::ChannelSettings settings);

bool isLevel(MixerCell cell);

} // namespace desktop
