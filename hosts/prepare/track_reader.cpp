// Reads a track's events, mended.
#include "prepare/track_reader.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

constexpr std::size_t kLongestMessage = 16383; ///< data bytes, the closing F7 included
constexpr std::size_t kMostLengthBytes = 2;    ///< of a system-exclusive message
constexpr std::size_t kMostDataBytes = 2;      ///< of a channel message
constexpr std::uint8_t kReleaseVelocity = 0x40;

} // namespace

TrackReader::TrackReader(const ByteView& bytes, const TrackSpan& span)
    : m_bytes(bytes), m_span(span), m_position(span.begin) {}

std::optional<SongEvent> TrackReader::next() {
    while (!m_done) {
        if (auto end = endNote()) {
            return end;
        }
        m_tick = std::min(m_tick + std::exchange(m_delay, 0), kLatestTick);
        if (m_position >= m_span.end) {
            finish();
            break;
        }
        RawEvent raw;
        const Reading reading =
            readRawEvent(m_bytes, m_position, m_span.end, m_running, m_span.rigour, raw);
        if (reading != Reading::Event) {
            recover(raw, reading);
            continue;
        }
        // Meta events may stand between the parts of a message, anything else breaks it off.
        if (m_open && raw.status != kMetaEvent && raw.status != kEndOfExclusive) {
            if (auto closed = closeOpenMessage()) {
                return closed;
            }
        }
        if (auto event = take(raw)) {
            ++m_findings.events;
            return event;
        }
    }
    if (m_open) {
        if (auto closed = closeOpenMessage()) {
            return closed;
        }
    }
    return endNote();
}

SongEvent TrackReader::eventHere(const RawEvent& raw) const {
    return {m_tick, raw.status, raw.metaType, m_bytes.part(raw.dataBegin, raw.dataEnd)};
}

std::optional<SongEvent> TrackReader::take(const RawEvent& raw) {
    m_position = raw.dataEnd;
    m_tick = std::min(m_tick + raw.delta, kLatestTick);
    m_running = runningAfter(raw.status, m_running, m_span.rigour);
    if (raw.isEndOfTrack()) {
        m_findings.hasEnd = true;
        m_lastEnd = m_position;
        if (!m_span.lengthHolds || m_span.rigour == Rigour::Strict) {
            finish();
        }
        return std::nullopt;
    }
    if (raw.status == kSystemExclusive || raw.status == kEndOfExclusive) {
        return takeExclusive(raw);
    }
    if (raw.status == kMetaEvent) {
        m_findings.tempos += raw.metaType == kTempo ? 1 : 0;
    } else {
        followNote(raw);
    }
    return eventHere(raw);
}

bool TrackReader::canBePlayed(std::size_t length) {
    if (length > kLongestMessage) {
        ++m_findings.tooLong;
        return false;
    }
    return true;
}

std::optional<SongEvent> TrackReader::takeExclusive(const RawEvent& raw) {
    const std::size_t length = raw.dataEnd - raw.dataBegin;
    const bool ends = length != 0 && m_bytes[raw.dataEnd - 1] == kEndOfExclusive;
    if (m_open || (raw.status == kSystemExclusive && !ends)) {
        return takePart(raw);
    }
    if (!ends) {
        ++m_findings.escapes;
        return std::nullopt;
    }
    if (!canBePlayed(length)) {
        return std::nullopt;
    }
    m_findings.longLengths += raw.lengthBytes > kMostLengthBytes || raw.lengthMended ? 1 : 0;
    return eventHere(raw);
}

void TrackReader::addPart(const RawEvent& raw) {
    if (!m_open) {
        m_open = true;
        m_openParts = 0;
        m_openLength = 0;
        m_message.clear();
    }
    ++m_openParts;
    m_openLength += raw.dataEnd - raw.dataBegin;
    if (m_openLength <= kLongestMessage) {
        const auto part = m_bytes.part(raw.dataBegin, raw.dataEnd);
        m_message.insert(m_message.end(), part.begin(), part.end());
    }
}

/// A message in parts is sent when its last one has come.
std::optional<SongEvent> TrackReader::takePart(const RawEvent& raw) {
    addPart(raw);
    if (raw.dataEnd == raw.dataBegin || m_bytes[raw.dataEnd - 1] != kEndOfExclusive) {
        return std::nullopt;
    }
    m_open = false;
    if (!canBePlayed(m_openLength)) {
        return std::nullopt;
    }
    ++m_findings.joined;
    return SongEvent{m_tick, kSystemExclusive, 0, m_message};
}

/// A message that was written in one and lacks nothing but its F7 gets it; the rest of one in parts is
/// missing.
std::optional<SongEvent> TrackReader::closeOpenMessage() {
    m_open = false;
    const bool whole = m_openParts == 1 && m_openLength < kLongestMessage && !m_message.empty() &&
                       std::all_of(m_message.begin(), m_message.end(),
                                   [](std::uint8_t byte) { return byte < kStatusBit; });
    if (!whole || m_findings.cutOff) {
        ++m_findings.unfinished;
        return std::nullopt;
    }
    ++m_findings.closed;
    ++m_findings.events;
    m_message.push_back(kEndOfExclusive);
    return SongEvent{m_tick, kSystemExclusive, 0, m_message};
}

void TrackReader::followNote(const RawEvent& raw) {
    const int kind = raw.status & kKindMask;
    const std::uint8_t key = m_bytes[raw.dataBegin];
    if ((kind == kNoteOn || kind == kNoteOff) && key < kStatusBit) {
        const bool on = kind == kNoteOn && m_bytes[raw.dataBegin + 1] != 0;
        m_sounding[raw.status & kChannelMask].set(key, on);
    }
}

/// What lies between the bytes that are no event and the next place where events can be told for certain.
/// Events that lean on the running status fill that gap exactly when they are read from the right byte on:
/// from the first one behind a status that was put in, from a later one where a status was lost and left its
/// data bytes. The former are kept; of the latter only the time is, for nobody knows what they were.
TrackReader::Place TrackReader::placeIn(std::size_t from, std::size_t found) const {
    Place best{found, kNoRunningStatus, 0};
    std::uint64_t shortest = UINT64_MAX;
    for (std::size_t skipped = 0; skipped <= kMostDataBytes; ++skipped) {
        const auto time = timeBetween(from + skipped, found);
        if (time && *time < shortest) {
            shortest = *time;
            best = skipped == 0 ? Place{from, m_running, 0} : Place{found, kNoRunningStatus, *time};
        }
    }
    return best;
}

/// Ticks of a row of events under the running status; nothing = there is none that ends exactly there.
std::optional<std::uint64_t> TrackReader::timeBetween(std::size_t from, std::size_t end) const {
    std::uint64_t time = 0;
    while (from < end) {
        RawEvent event;
        if (readRawEvent(m_bytes, from, end, m_running, Rigour::Strict, event) != Reading::Event) {
            return std::nullopt;
        }
        time += event.delta;
        from = event.dataEnd;
    }
    return from == end ? std::optional(time) : std::nullopt;
}

std::optional<TrackReader::Place> TrackReader::placeBehind(const RawEvent& raw) const {
    const std::size_t from = raw.statusPosition + 1;
    const auto found = findEvents(m_bytes, from, m_span.end);
    if (!found) {
        return std::nullopt;
    }
    const bool gap = m_running != kNoRunningStatus && isUndefined(raw.status);
    return gap ? placeIn(from, *found) : Place{*found, kNoRunningStatus, 0};
}

void TrackReader::recover(const RawEvent& raw, Reading reading) {
    const bool asPlayed = m_span.rigour == Rigour::AsPlayed;
    if (asPlayed && (m_findings.hasEnd || reading == Reading::Unreadable)) {
        m_failed = true;
        m_done = true;
        return;
    }
    const std::optional<Place> place = placeBehind(raw);
    if (reading == Reading::CutOff && !place) {
        m_findings.cutOff = true;
        finish();
        return;
    }
    if (asPlayed) {
        m_failed = true;
        m_done = true;
        return;
    }
    if (!place) {
        m_findings.unreadable = true;
        finish();
        return;
    }
    skipTo(*place, raw);
}

void TrackReader::skipTo(const Place& place, const RawEvent& raw) {
    // The delay before the bad bytes is most often sound; with it the rest stays in its place.
    m_delay = place.time + (raw.delta <= kLongestLikelyDelay ? raw.delta : 0);
    // What was skipped may have held the ends of notes.
    m_endsNotes = place.position != raw.statusPosition + 1;
    ++m_findings.skips;
    m_findings.skippedBytes += place.position - m_position;
    m_position = place.position;
    m_running = place.running;
}

void TrackReader::finish() {
    m_done = true;
    if (m_span.cutByFile && !m_findings.hasEnd && !m_findings.unreadable) {
        m_findings.cutOff = true;
    }
    m_endsNotes = m_findings.cutOff || m_findings.unreadable;
}

/// Ends what sounds where a track breaks off, one note at each call.
std::optional<SongEvent> TrackReader::endNote() {
    if (!m_endsNotes) {
        return std::nullopt;
    }
    for (std::size_t channel = 0; channel < m_sounding.size(); ++channel) {
        auto& keys = m_sounding[channel];
        for (std::size_t key = 0; keys.any() && key < keys.size(); ++key) {
            if (keys[key]) {
                keys.reset(key);
                ++m_findings.endedNotes;
                m_noteEnd = {static_cast<std::uint8_t>(key), kReleaseVelocity};
                return SongEvent{m_tick, static_cast<std::uint8_t>(kNoteOff | channel), 0,
                                 m_noteEnd};
            }
        }
    }
    m_endsNotes = false;
    return std::nullopt;
}

} // namespace host
