// Follows notes and pedals as a device would.
#include "shared/sounding.h"

namespace host {

namespace {

constexpr std::uint8_t kKindMask = 0xF0;
constexpr std::uint8_t kChannelMask = 0x0F;
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kController = 0xB0;
constexpr std::uint8_t kSystem = 0xF0;

constexpr std::uint8_t kSustain = 64;
constexpr std::uint8_t kSostenuto = 66;
constexpr std::uint8_t kAllSoundOff = 120;
constexpr std::uint8_t kResetAllControllers = 121;
constexpr std::uint8_t kAllNotesOff = 123;
constexpr std::uint8_t kPedalDown = 64; ///< lowest value that counts as pressed

} // namespace

void SoundingChannel::release(std::uint8_t key) {
    if (m_keys[key] && m_sustain) {
        m_held.set(key);
    }
    m_keys.reset(key);
}

void SoundingChannel::controller(std::uint8_t number, std::uint8_t value) {
    switch (number) {
    case kSustain:
        m_sustain = value >= kPedalDown;
        if (!m_sustain) {
            m_held.reset();
        }
        break;
    case kSostenuto:
        m_sostenuto = value >= kPedalDown;
        break;
    case kAllSoundOff:
        m_keys.reset();
        m_held.reset();
        break;
    case kResetAllControllers:
        m_sustain = false;
        m_sostenuto = false;
        m_held.reset();
        break;
    case kAllNotesOff:
        if (m_sustain) {
            m_held |= m_keys;
        }
        m_keys.reset();
        break;
    default:
        break;
    }
}

void SoundingChannel::take(std::span<const std::uint8_t> bytes) {
    const std::uint8_t kind = bytes[0] & kKindMask;
    if (kind == kNoteOn && bytes[2] != 0) {
        m_keys.set(bytes[1]);
    } else if (kind == kNoteOn || kind == kNoteOff) {
        release(bytes[1]);
    } else if (kind == kController) {
        controller(bytes[1], bytes[2]);
    }
}

std::vector<std::string> SoundingChannel::list() const {
    std::vector<std::string> sounding;
    const std::bitset<kKeys> notes = m_keys | m_held;
    for (std::size_t key = 0; key < kKeys; ++key) {
        if (notes[key]) {
            sounding.push_back("note " + std::to_string(key));
        }
    }
    if (m_sustain) {
        sounding.emplace_back("sustain pedal");
    }
    if (m_sostenuto) {
        sounding.emplace_back("sostenuto pedal");
    }
    return sounding;
}

void Sounding::take(int output, std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kLongestRead = 3;
    if (bytes.size() < kLongestRead || bytes[0] < kNoteOff || bytes[0] >= kSystem) {
        return;
    }
    m_channels[{output, bytes[0] & kChannelMask}].take(bytes);
}

std::vector<std::string> Sounding::list() const {
    std::vector<std::string> sounding;
    for (const auto& [place, channel] : m_channels) {
        for (const std::string& what : channel.list()) {
            sounding.push_back("output " + std::to_string(place.first) + " channel " +
                               std::to_string(place.second) + ": " + what);
        }
    }
    return sounding;
}

} // namespace host
