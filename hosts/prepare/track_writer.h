// Writes one track of the prepared song, its times scaled.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "prepare/time_base.h"
#include "prepare/track_reader.h"

namespace host {

class TrackWriter {
public:
    /// Begins a track chunk at the end of the bytes; both must outlive the writer.
    TrackWriter(std::vector<std::uint8_t>& bytes, const TimeBase& timeBase);

    /// Ticks of the file, never falling.
    void put(const SongEvent& event);
    void putTempo(std::uint64_t tick, std::uint32_t microseconds);
    /// Writes the end of the track and the chunk's length.
    void finish(std::uint64_t tick);

private:
    /// A key of a channel. A note-off that would fall on the tick of its note-on waits for the next tick:
    /// at equal times the engine keeps no order, and a note might never end.
    struct Key {
        std::uint64_t start = 0;  ///< of its last note, in the file's ticks
        std::uint32_t scaled = 0; ///< the same in the prepared song's
        bool sounds = false;
        std::uint8_t waiting = 0;  ///< status of a note-off that waits; 0 = none
        std::uint8_t velocity = 0; ///< of that
    };

    bool isLate(const SongEvent& event, std::uint32_t tick);
    void startNote(const SongEvent& event, std::uint32_t tick);
    void writeWaiting(std::uint32_t tick);
    void writeWaiting(std::uint32_t tick, std::size_t key);
    void write(std::uint32_t tick, const SongEvent& event);
    void writeVariable(std::uint32_t value);

    std::vector<std::uint8_t>& m_bytes;
    const TimeBase& m_timeBase;
    std::size_t m_begin;
    std::uint32_t m_tick = 0;
    int m_running = kNoRunningStatus;
    std::vector<Key> m_keys;              ///< by channel and key; empty where times are not scaled
    std::vector<std::uint16_t> m_waiting; ///< indexes of keys, all due at m_due
    std::uint32_t m_due = 0;
};

/// A number of 1 to 4 bytes, most significant byte first.
void appendNumber(std::vector<std::uint8_t>& bytes, std::uint32_t value, int width);
void appendTag(std::vector<std::uint8_t>& bytes, std::string_view tag);

} // namespace host
