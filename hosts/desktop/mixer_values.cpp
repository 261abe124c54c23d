// The mixer's arithmetic.
#include "desktop/mixer_values.h"

namespace desktop {

namespace {

/// What synthesizers start with.
constexpr int kUsualVolume = 100;
constexpr int kUsualPan = 64;
constexpr int kUsualReverb = 40;
constexpr int kUsualChorus = 0;

int known(int value, int otherwise) {
    return value < 0 ? otherwise : value;
}

int songValue(MixerCell cell, const host::ChannelActivity& activity) {
    switch (cell) {
    case MixerCell::Volume:
        return known(activity.volume, kUsualVolume);
    case MixerCell::Pan:
        return known(activity.pan, kUsualPan);
    case MixerCell::Reverb:
        return known(activity.reverb, kUsualReverb);
    default:
        return known(activity.chorus, kUsualChorus);
    }
}

int& offsetOf(MixerCell cell, host::ChannelSettings& settings) {
    switch (cell) {
    case MixerCell::Volume:
        return settings.volume;
    case MixerCell::Pan:
        return settings.pan;
    case MixerCell::Reverb:
        return settings.reverb;
    default:
        return settings.chorus;
    }
}

} // namespace

bool isLevel(MixerCell cell) {
    return cell == MixerCell::Volume || cell == MixerCell::Pan || cell == MixerCell::Reverb ||
           cell == MixerCell::Chorus;
}

int shownValue(MixerCell cell, const host::ChannelActivity& activity,
               const host::ChannelSettings& settings) {
    host::ChannelSettings copy = settings;
    return std::clamp(songValue(cell, activity) + offsetOf(cell, copy), 0, kMostValue);
}

host::ChannelSettings withValue(MixerCell cell, int value, const host::ChannelActivity& activity,
                                host::ChannelSettings settings) {
    offsetOf(cell, settings) = std::clamp(value, 0, kMostValue) - songValue(cell, activity);
    return settings;
}

host::ChannelSettings stepped(MixerCell cell, int step, const host::ChannelActivity& activity,
                              const host::ChannelSettings& settings) {
    return withValue(cell, shownValue(cell, activity, settings) + step, activity, settings);
}

host::ChannelSettings toggled(MixerCell cell, host::ChannelSettings settings) {
    bool& value = cell == MixerCell::Mute ? settings.muted : settings.solo;
    value = !value;
    return settings;
}

host::ChannelSettings asWritten(MixerCell cell, host::ChannelSettings settings) {
    if (cell == MixerCell::Mute) {
        settings.muted = false;
    } else if (cell == MixerCell::Solo) {
        settings.solo = false;
    } else {
        offsetOf(cell, settings) = 0;
    }
    return settings;
}

} // namespace desktop
