// Channel settings of a player. The engine's offsets and overrides act from the song's next controller or
// program change on; what must be heard now is sent.
#include "shared/channel_mixer.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr int kNotSet = -1;
constexpr int kMaxData = 127;
constexpr int kPanCentre = 64;

/// A controller that has an offset.
struct MixControl {
    int controller;
    int ChannelSettings::*offset;
    void(CORVMO_CALL* store)(HMIDIOUT, std::int16_t, std::int16_t);
    std::uint32_t(CORVMO_CALL* send)(HMIDIOUT, std::int16_t, std::int16_t);
    int usual; ///< value of a channel that was never set
    int lowest;
};

const MixControl kMixControls[] = {
    {7, &ChannelSettings::volume, mm_SetVolume, mm_SetMIDIVolume, 100, 0},
    {10, &ChannelSettings::pan, mm_SetBalance, mm_SetMIDIBalance, kPanCentre, 1},
    {91, &ChannelSettings::reverb, mm_SetReverb, mm_SetMIDIReverb, 40, 0},
    {93, &ChannelSettings::chorus, mm_SetChorus, mm_SetMIDIChorus, 0, 0},
};
constexpr int kBankMsbControl = static_cast<int>(Controller::BankMsb);
constexpr int kBankLsbControl = static_cast<int>(Controller::BankLsb);

std::int16_t word(int value) {
    return static_cast<std::int16_t>(value);
}

/// What the engine makes of a song's value and an offset.
std::int16_t withOffset(const MixControl& control, int value, int offset) {
    const bool unsetPan = control.usual == kPanCentre && value == 0;
    const int base = unsetPan ? kPanCentre : value;
    return word(offset == 0 ? base : std::clamp(base + offset, control.lowest, kMaxData));
}

} // namespace

/// First data byte or value of the last matching event up to the position.
template <typename Matches>
int ChannelMixer::lastValue(int channel, int otherwise, Matches matches) const {
    const MMEVENT* const events = mm_GetPointerEvents(m_player, 0);
    const std::int32_t count = events == nullptr ? 0 : mm_GetNumEvents(m_player);
    const std::uint32_t position = mm_GetTicks(m_player);
    int value = otherwise;
    for (std::int32_t i = 0; i < count && events[i].time <= position; ++i) {
        if (channelOf(events[i]) == channel && matches(events[i])) {
            value = isChannelMessage(events[i], ChannelMessage::ProgramChange) ? events[i].byte1
                                                                               : events[i].byte2;
        }
    }
    return value;
}

int ChannelMixer::songValue(int channel, int controller, int otherwise) const {
    return lastValue(channel, otherwise, [controller](const MMEVENT& event) {
        return isChannelMessage(event, ChannelMessage::Controller) && event.byte1 == controller;
    });
}

int ChannelMixer::songProgram(int channel) const {
    return lastValue(channel, kNotSet, [](const MMEVENT& event) {
        return isChannelMessage(event, ChannelMessage::ProgramChange);
    });
}

void ChannelMixer::prepare(const SongSettings& settings) const {
    muteAsSet(settings, false);
    for (int channel = 0; channel < kChannels; ++channel) {
        const ChannelSettings& own = settings.channels[static_cast<std::size_t>(channel)];
        for (const MixControl& control : kMixControls) {
            control.store(m_player, word(channel), word(own.*control.offset));
        }
        if (own.program != kSongsProgram) {
            setPatch(channel, own);
        }
    }
}

void ChannelMixer::complete(const SongSettings& settings) const {
    for (int channel = 0; channel < kChannels; ++channel) {
        const ChannelSettings& own = settings.channels[static_cast<std::size_t>(channel)];
        for (const MixControl& control : kMixControls) {
            const int offset = own.*control.offset;
            if (offset != 0 && songValue(channel, control.controller, kNotSet) == kNotSet) {
                control.send(m_player, word(channel), withOffset(control, control.usual, offset));
            }
        }
        if (own.program != kSongsProgram && songProgram(channel) == kNotSet) {
            sendPatch(channel, own);
        }
    }
}

void ChannelMixer::change(int channel, const ChannelSettings& before,
                          const ChannelSettings& now) const {
    for (const MixControl& control : kMixControls) {
        const int offset = now.*control.offset;
        if (offset != before.*control.offset) {
            control.store(m_player, word(channel), word(offset));
            const int value = songValue(channel, control.controller, control.usual);
            control.send(m_player, word(channel), withOffset(control, value, offset));
        }
    }
    if (now.program != before.program || now.bankMsb != before.bankMsb ||
        now.bankLsb != before.bankLsb) {
        setPatch(channel, now);
        sendPatch(channel, now);
    }
}

void ChannelMixer::muteAsSet(const SongSettings& settings, bool silence) const {
    const MIDIOUT& record = *mm_GetMM(m_player);
    for (int channel = 0; channel < kChannels; ++channel) {
        const std::int16_t muted = settings.silences(channel) ? 1 : 0;
        const std::int16_t before = record.mute[channel];
        if (muted != before) {
            mm_SetMute(m_player, word(channel), muted, silence ? 1 : 0);
        }
    }
}

/// Without an override the channel goes back to the song's own banks.
void ChannelMixer::setPatch(int channel, const ChannelSettings& settings) const {
    MMPATCH patch{};
    if (settings.program == kSongsProgram) {
        patch = {word(songValue(channel, kBankMsbControl, 0)),
                 word(songValue(channel, kBankLsbControl, 0)), MMPATCH_NO_OVERRIDE, 0};
    } else {
        patch = {word(settings.bankMsb), word(settings.bankLsb), word(settings.program), 1};
    }
    mm_SetPatch(m_player, word(channel), &patch);
}

void ChannelMixer::sendPatch(int channel, const ChannelSettings& settings) const {
    std::array<std::int16_t, 3> words = {word(settings.bankMsb), word(settings.bankLsb),
                                         word(settings.program)};
    if (settings.program == kSongsProgram) {
        words = {word(songValue(channel, kBankMsbControl, 0)),
                 word(songValue(channel, kBankLsbControl, 0)),
                 word(std::max(songProgram(channel), 0))};
    }
    mm_SetMIDIPatch(m_player, word(channel), words.data());
}

} // namespace host
