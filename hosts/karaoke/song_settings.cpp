// Puts a user's wishes into a player that holds a song.
#include "karaoke/song_settings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "shared/fade_curve.h"
#include "shared/song_events.h"

namespace karaoke {

namespace {

constexpr std::int16_t kKeepSounding =
    0;                            ///< the player is still halted: there is nothing to silence
constexpr int kUsualVolume = 100; ///< controller 7 of a channel that was never set
constexpr double kMillisecondsPerSecond = 1000;

bool contains(const std::vector<int>& channels, int channel) {
    return std::find(channels.begin(), channels.end(), channel) != channels.end();
}

void muteChannels(HMIDIOUT player, const PlayOptions& options) {
    for (int channel = 0; channel < host::kChannels; ++channel) {
        const bool leftOut = !options.solo.empty() && !contains(options.solo, channel);
        if (leftOut || contains(options.muted, channel)) {
            mm_SetMute(player, static_cast<std::int16_t>(channel), 1, kKeepSounding);
        }
    }
}

void replaceDrums(HMIDIOUT player, const std::vector<DrumReplacement>& drums) {
    std::array<MMNOTEPAIR, 10> pairs{};
    pairs.fill({-1, -1});
    for (std::size_t i = 0; i < std::min(drums.size(), pairs.size()); ++i) {
        pairs[i] = {static_cast<std::int8_t>(drums[i].from), static_cast<std::int8_t>(drums[i].to)};
    }
    mm_SetReplaceNotes(player, host::kDrumChannel, pairs.data(), kKeepSounding);
}

MMPATCH patchOf(const PatchChoice& choice) {
    return {static_cast<std::int16_t>(choice.bankMsb), static_cast<std::int16_t>(choice.bankLsb),
            static_cast<std::int16_t>(choice.program), 1};
}

/// Whether the song sends something on a channel up to the position that the player stands on.
template <typename Matches>
bool setBySong(HMIDIOUT player, int channel, Matches matches) {
    const MMEVENT* const events = mm_GetPointerEvents(player, 0);
    const std::uint32_t position = mm_GetTicks(player);
    const std::int32_t count = events == nullptr ? 0 : mm_GetNumEvents(player);
    return std::any_of(events, events + count, [&](const MMEVENT& event) {
        return event.time <= position && host::channelOf(event) == channel && matches(event);
    });
}

/// An override acts with the song's next program change; a channel without one needs it now.
void sendPatches(HMIDIOUT player, const std::vector<PatchChoice>& patches) {
    for (const PatchChoice& choice : patches) {
        const bool sent = setBySong(player, choice.channel, [](const MMEVENT& event) {
            return host::isChannelMessage(event, host::ChannelMessage::ProgramChange);
        });
        if (!sent) {
            const MMPATCH patch = patchOf(choice);
            const std::array<std::int16_t, 3> words = {patch.bankMsb, patch.bankLsb, patch.program};
            mm_SetMIDIPatch(player, static_cast<std::int16_t>(choice.channel), words.data());
        }
    }
}

void sendVolumes(HMIDIOUT player, const std::vector<VolumeOffset>& volumes) {
    for (const VolumeOffset& volume : volumes) {
        const bool sent = setBySong(player, volume.channel, [](const MMEVENT& event) {
            return host::isController(event, host::Controller::Volume);
        });
        if (!sent) {
            mm_SetMIDIVolume(player, static_cast<std::int16_t>(volume.channel),
                             static_cast<std::int16_t>(kUsualVolume + volume.offset));
        }
    }
}

std::uint32_t milliseconds(double seconds) {
    return static_cast<std::uint32_t>(std::lround(std::max(seconds, 0.0) * kMillisecondsPerSecond));
}

void startFades(HMIDIOUT player, const PlayOptions& options, const host::Song& song) {
    if (options.fadeIn > 0) {
        const MMFADE fade = host::fadeIn(milliseconds(options.fadeIn));
        mm_SetFadeIn(player, &fade);
    }
    if (options.fadeOut > 0) {
        // The fade's time runs from the first note on.
        const double length = song.seconds() - song.timeline.secondsAt(mm_GetTicks(player));
        const double fading = std::min(options.fadeOut, std::max(length, 0.001));
        const MMFADE fade = host::fadeOut(milliseconds(length - fading), milliseconds(fading));
        mm_SetFadeOut(player, &fade);
    }
}

} // namespace

void applySettings(HMIDIOUT player, const PlayOptions& options) {
    mm_SetTempo(player, host::kDefaultTempo, options.tempoPercent);
    mm_SetTranspose(player, static_cast<std::int16_t>(options.transpose), kKeepSounding);
    muteChannels(player, options);
    for (const VolumeOffset& volume : options.volumes) {
        mm_SetVolume(player, static_cast<std::int16_t>(volume.channel),
                     static_cast<std::int16_t>(volume.offset));
    }
    for (const PatchChoice& choice : options.patches) {
        const MMPATCH patch = patchOf(choice);
        mm_SetPatch(player, static_cast<std::int16_t>(choice.channel), &patch);
    }
    replaceDrums(player, options.drums);
}

void completeSettings(HMIDIOUT player, const PlayOptions& options, const host::Song& song) {
    sendPatches(player, options.patches);
    sendVolumes(player, options.volumes);
    startFades(player, options, song);
}

} // namespace karaoke
