// Reads a track's events, mended: messages in parts come whole, what cannot be played is left out, and
// damage is stepped over where the events behind it can be told for certain.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "prepare/byte_view.h"
#include "prepare/raw_event.h"

namespace host {

/// No song gets there; keeps sums and products of ticks within 64 bits.
constexpr std::uint64_t kLatestTick = std::uint64_t{1} << 48;

/// Where a track lies, and how to read it.
struct TrackSpan {
    std::size_t begin = 0; ///< of its first event
    std::size_t end = 0;
    bool lengthHolds =
        true; ///< the chunk's length is right; otherwise the first end of track ends it
    bool cutByFile = false; ///< the file ends before the track should
    Rigour rigour = Rigour::AsPlayed;
};

/// What was found wrong in a track, and what one has to know of it.
struct TrackFindings {
    bool hasEnd = false; ///< there is an end-of-track event
    bool cutOff = false; ///< the last event is not whole, or the file ends before the track does
    bool unreadable = false; ///< the rest of the track was given up
    std::size_t skips = 0;   ///< places where bytes were stepped over
    std::size_t skippedBytes = 0;
    std::size_t bytesBehindEnd = 0; ///< that are no events
    std::size_t joined = 0;         ///< system-exclusive messages that came in parts
    std::size_t closed = 0;         ///< and those without their end
    std::size_t unfinished = 0;
    std::size_t tooLong = 0;
    std::size_t longLengths = 0; ///< length written wrongly, or in more bytes than it needs
    std::size_t escapes = 0;
    bool statusesAdded = false; ///< a running status went on behind a real-time message
    std::size_t endedNotes = 0;
    std::size_t events = 0; ///< without the end of track
    std::size_t tempos = 0;

    bool isBroken() const {
        return cutOff || unreadable || skips != 0;
    }
};

/// One event as it is to be played.
struct SongEvent {
    std::uint64_t tick = 0; ///< from the start of the track, never falling
    std::uint8_t status = 0;
    std::uint8_t metaType = 0;
    std::span<const std::uint8_t>
        data; ///< valid until the reader goes on; in the file for channel messages

    bool isMeta(std::uint8_t type) const {
        return status == kMetaEvent && metaType == type;
    }
};

class TrackReader {
public:
    /// @param bytes  must outlive the reader
    TrackReader(const ByteView& bytes, const TrackSpan& span);

    /// @return the next event, ends of track left out; nothing = the track has ended
    std::optional<SongEvent> next();

    /// When the track ends; valid once it has.
    std::uint64_t endTick() const {
        return m_tick;
    }
    const TrackFindings& findings() const {
        return m_findings;
    }
    /// The track holds bytes that are no events; only a strict reading gets behind them.
    bool failed() const {
        return m_failed;
    }
    /// Behind the last end-of-track event.
    std::size_t lastEnd() const {
        return m_lastEnd;
    }

private:
    struct Place {
        std::size_t position;
        int running;        ///< status in force there
        std::uint64_t time; ///< ticks of the events before it
    };

    std::optional<SongEvent> take(const RawEvent& raw);
    std::optional<SongEvent> takeExclusive(const RawEvent& raw);
    std::optional<SongEvent> takePart(const RawEvent& raw);
    std::optional<SongEvent> closeOpenMessage();
    std::optional<SongEvent> endNote();
    void addPart(const RawEvent& raw);
    bool canBePlayed(std::size_t length);
    void followNote(const RawEvent& raw);
    Place placeIn(std::size_t from, std::size_t found) const;
    std::optional<std::uint64_t> timeBetween(std::size_t from, std::size_t end) const;
    void skipTo(const Place& place, const RawEvent& raw);
    void recover(const RawEvent& raw, Reading reading);
    std::optional<Place> placeBehind(const RawEvent& raw) const;
    void finish();
    SongEvent eventHere(const RawEvent& raw) const;

    const ByteView& m_bytes;
    TrackSpan m_span;
    TrackFindings m_findings;
    std::size_t m_position;
    std::size_t m_lastEnd = 0;
    std::uint64_t m_tick = 0;
    std::uint64_t m_delay = 0; ///< before the next event, beside its own
    int m_running = kNoRunningStatus;
    bool m_done = false;
    bool m_failed = false;
    bool m_endsNotes = false; ///< what sounds is ended before anything else
    bool m_open = false;      ///< a system-exclusive message has begun and not ended
    std::size_t m_openParts = 0;
    std::size_t m_openLength = 0; ///< also counts what is too long to be kept
    std::vector<std::uint8_t> m_message;
    std::array<std::uint8_t, 2> m_noteEnd{};
    std::array<std::bitset<128>, 16> m_sounding;
};

} // namespace host
