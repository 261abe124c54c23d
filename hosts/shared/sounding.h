// What still sounds after a stretch of MIDI messages: notes without an end, pedals held down. It serves the
// check of MIDI logs and the project's tests.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// Follows the notes and pedals of one MIDI channel as a device would.
class SoundingChannel {
public:
    /// @param bytes  a whole channel message of this channel
    void take(std::span<const std::uint8_t> bytes);

    /// "note 60", "sustain pedal", "sostenuto pedal"; lowest note first.
    std::vector<std::string> list() const;

private:
    static constexpr std::size_t kKeys = 256; ///< broken songs send data bytes above 127

    void release(std::uint8_t key);
    void controller(std::uint8_t number, std::uint8_t value);

    std::bitset<kKeys> m_keys;
    std::bitset<kKeys> m_held; ///< released while the sustain pedal was down
    bool m_sustain = false;
    bool m_sostenuto = false;
};

/// Follows every channel of every output.
class Sounding {
public:
    /// System messages are passed over; so is a message that is cut off.
    /// @param output  number of the output that received it
    void take(int output, std::span<const std::uint8_t> bytes);

    /// One line for each note that still sounds and each pedal that is still held, as
    /// "output 0 channel 3: note 60", channels counted from 0.
    std::vector<std::string> list() const;

private:
    std::map<std::pair<int, int>, SoundingChannel> m_channels;
};

} // namespace host
