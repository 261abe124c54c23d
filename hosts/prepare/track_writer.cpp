// Writes one track of the prepared song.
#include "prepare/track_writer.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr std::size_t kChannels = 16;
constexpr std::size_t kKeys = 128;
constexpr int kLengthSize = 4; ///< bytes of a chunk's length
constexpr std::uint32_t kSevenBits = 0x7F;
constexpr int kBitsPerByte = 7;                 ///< of a variable-length number
constexpr int kLargestShift = 4 * kBitsPerByte; ///< so that 32 bits fit

bool isNote(const SongEvent& event) {
    const int kind = event.status & kKindMask;
    return (kind == kNoteOn || kind == kNoteOff) && event.data[0] < kKeys;
}

bool isNoteOn(const SongEvent& event) {
    return (event.status & kKindMask) == kNoteOn && event.data[1] != 0;
}

std::size_t indexOf(const SongEvent& event) {
    return (event.status & kChannelMask) * kKeys + event.data[0];
}

} // namespace

TrackWriter::TrackWriter(std::vector<std::uint8_t>& bytes, const TimeBase& timeBase)
    : m_bytes(bytes), m_timeBase(timeBase), m_begin(bytes.size() + kChunkHeadSize) {
    appendTag(m_bytes, kTrackTag);
    appendNumber(m_bytes, 0, kLengthSize);
    if (timeBase.scales()) {
        m_keys.resize(kChannels * kKeys);
    }
}

void TrackWriter::put(const SongEvent& event) {
    const std::uint32_t tick = m_timeBase.scaled(event.tick);
    writeWaiting(tick);
    if (!m_keys.empty() && isNote(event)) {
        if (isNoteOn(event)) {
            startNote(event, tick);
        } else if (isLate(event, tick)) {
            return;
        }
    }
    write(tick, event);
}

void TrackWriter::startNote(const SongEvent& event, std::uint32_t tick) {
    const std::size_t index = indexOf(event);
    writeWaiting(tick, index);
    m_keys[index] = {.start = event.tick, .scaled = tick, .sounds = true};
}

bool TrackWriter::isLate(const SongEvent& event, std::uint32_t tick) {
    const std::size_t index = indexOf(event);
    Key& key = m_keys[index];
    const bool late =
        key.sounds && key.scaled == tick && key.start != event.tick && tick != UINT32_MAX;
    key.sounds = false;
    if (late) {
        key.waiting = event.status;
        key.velocity = event.data[1];
        m_waiting.push_back(static_cast<std::uint16_t>(index));
        m_due = tick + 1;
    }
    return late;
}

/// Writes the note-offs that are due before what comes at a tick.
void TrackWriter::writeWaiting(std::uint32_t tick) {
    if (m_waiting.empty() || tick < m_due) {
        return;
    }
    for (const std::uint16_t key : m_waiting) {
        writeWaiting(m_due, key);
    }
    m_waiting.clear();
}

void TrackWriter::writeWaiting(std::uint32_t tick, std::size_t index) {
    Key& key = m_keys[index];
    if (key.waiting != 0) {
        const std::array<std::uint8_t, 2> data{static_cast<std::uint8_t>(index % kKeys),
                                               key.velocity};
        write(tick, {0, key.waiting, 0, data});
        key.waiting = 0;
    }
}

void TrackWriter::putTempo(std::uint64_t tick, std::uint32_t microseconds) {
    const std::array<std::uint8_t, 3> data{static_cast<std::uint8_t>(microseconds >> 16),
                                           static_cast<std::uint8_t>(microseconds >> 8),
                                           static_cast<std::uint8_t>(microseconds)};
    put({tick, kMetaEvent, kTempo, data});
}

void TrackWriter::finish(std::uint64_t tick) {
    const std::uint32_t end = m_timeBase.scaled(tick);
    writeWaiting(UINT32_MAX);
    write(std::max(end, m_tick), {tick, kMetaEvent, kEndOfTrack, {}});
    std::vector<std::uint8_t> length;
    appendNumber(length, static_cast<std::uint32_t>(m_bytes.size() - m_begin), kLengthSize);
    std::copy(length.begin(), length.end(),
              m_bytes.begin() + static_cast<std::ptrdiff_t>(m_begin - kLengthSize));
}

void TrackWriter::write(std::uint32_t tick, const SongEvent& event) {
    writeVariable(tick - m_tick);
    m_tick = tick;
    const bool channel = event.status < kFirstSystemStatus;
    // A first data byte with its top bit set would be taken for a status.
    const bool implied = channel && event.status == m_running && event.data[0] < kStatusBit;
    if (!implied) {
        m_bytes.push_back(event.status);
    }
    m_running = channel ? event.status : kNoRunningStatus;
    if (event.status == kMetaEvent) {
        m_bytes.push_back(event.metaType);
    }
    if (event.status == kMetaEvent || event.status == kSystemExclusive ||
        event.status == kEndOfExclusive) {
        writeVariable(static_cast<std::uint32_t>(event.data.size()));
    }
    m_bytes.insert(m_bytes.end(), event.data.begin(), event.data.end());
}

void TrackWriter::writeVariable(std::uint32_t value) {
    for (int shift = kLargestShift; shift > 0; shift -= kBitsPerByte) {
        if (value >> shift != 0) {
            m_bytes.push_back(
                static_cast<std::uint8_t>((value >> shift & kSevenBits) | kStatusBit));
        }
    }
    m_bytes.push_back(static_cast<std::uint8_t>(value & kSevenBits));
}

void appendNumber(std::vector<std::uint8_t>& bytes, std::uint32_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void appendTag(std::vector<std::uint8_t>& bytes, std::string_view tag) {
    bytes.insert(bytes.end(), tag.begin(), tag.end());
}

} // namespace host
