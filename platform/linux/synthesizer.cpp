// MIDI messages for FluidSynth's synthesizer.
#include "platform/linux/synthesizer.h"

#include <fluidsynth.h>

#include "platform/linux/short_message.h"

namespace {

// Loud enough beside other programs, with room for a full band before it clips.
constexpr double kGain = 0.5;
// The device number that GS and XG reset messages are addressed to by custom.
constexpr int kDeviceId = 0x10;
constexpr int kResetPresets = 1;

constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kEndOfExclusive = 0xF7;
constexpr std::uint8_t kSystemReset = 0xFF;

void silenceLog() {
    for (int level = FLUID_PANIC; level < LAST_LOG_LEVEL; ++level) {
        fluid_set_log_function(level, nullptr, nullptr);
    }
}

} // namespace

Synthesizer::Synthesizer(unsigned rate) {
    silenceLog();
    m_settings = new_fluid_settings();
    if (m_settings == nullptr) {
        return;
    }
    fluid_settings_setnum(m_settings, "synth.gain", kGain);
    fluid_settings_setint(m_settings, "synth.device-id", kDeviceId);
    if (rate != 0) {
        fluid_settings_setnum(m_settings, "synth.sample-rate", rate);
    }
    m_synth = new_fluid_synth(m_settings);
}

Synthesizer::~Synthesizer() {
    delete_fluid_synth(m_synth);
    delete_fluid_settings(m_settings);
}

bool Synthesizer::loadFont(const std::string& path) {
    return m_synth != nullptr && fluid_synth_sfload(m_synth, path.c_str(), kResetPresets) >= 0;
}

void Synthesizer::sendShort(std::uint32_t message) {
    if (m_synth == nullptr) {
        return;
    }
    const int channel = static_cast<int>(message & (kMidiChannels - 1));
    const int first = firstDataOf(message);
    const int second = secondDataOf(message);
    switch (statusOf(message) & 0xF0) {
    case 0x80:
        fluid_synth_noteoff(m_synth, channel, first);
        break;
    case 0x90:
        fluid_synth_noteon(m_synth, channel, first, second);
        break;
    case 0xA0:
        fluid_synth_key_pressure(m_synth, channel, first, second);
        break;
    case kControlChange:
        fluid_synth_cc(m_synth, channel, first, second);
        break;
    case 0xC0:
        fluid_synth_program_change(m_synth, channel, first);
        break;
    case 0xD0:
        fluid_synth_channel_pressure(m_synth, channel, first);
        break;
    case 0xE0:
        fluid_synth_pitch_bend(m_synth, channel, second << 7 | first);
        break;
    default:
        if (statusOf(message) == kSystemReset) {
            fluid_synth_system_reset(m_synth);
        }
        break;
    }
}

void Synthesizer::sendLong(std::span<const std::uint8_t> bytes) {
    const bool whole =
        bytes.size() > 2 && bytes.front() == kSystemExclusive && bytes.back() == kEndOfExclusive;
    if (m_synth == nullptr || !whole) {
        return;
    }
    const auto body = bytes.subspan(1, bytes.size() - 2);
    fluid_synth_sysex(m_synth, reinterpret_cast<const char*>(body.data()),
                      static_cast<int>(body.size()), nullptr, nullptr, nullptr, 0);
}

void Synthesizer::reset() {
    for (unsigned channel = 0; channel < kMidiChannels; ++channel) {
        sendShort(controlChange(channel, kSustainPedal, 0));
        sendShort(controlChange(channel, kSostenutoPedal, 0));
        sendShort(controlChange(channel, kAllNotesOff, 0));
    }
}
