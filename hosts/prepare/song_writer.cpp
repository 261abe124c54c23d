// Writes the prepared song.
#include "prepare/song_writer.h"

#include <algorithm>
#include <array>
#include <functional>
#include <queue>
#include <span>
#include <utility>

#include "prepare/track_writer.h"

namespace host {

namespace {

constexpr std::uint32_t kHeaderLength = 6;
constexpr std::uint32_t kDefaultTempo = 500000;                   ///< where a song gives none
constexpr std::array<std::uint8_t, 4> kDefaultMeter{4, 2, 24, 8}; ///< 4/4

using Spans = std::span<const TrackSpan>;

/// Whether tempos of the song's own mean something.
bool isPlayed(const SongEvent& event, const TimeBase& timeBase) {
    return timeBase.fixedTempo == 0 || !event.isMeta(kTempo);
}

/// Several tracks as one: by time, at equal times in their order.
class Merger {
public:
    Merger(const ByteView& song, Spans tracks) {
        m_readers.reserve(tracks.size());
        m_events.resize(tracks.size());
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            m_readers.emplace_back(song, tracks[i]);
            fetch(i);
        }
    }

    void writeTo(TrackWriter& writer, const TimeBase& timeBase) {
        while (!m_queue.empty()) {
            const std::size_t track = m_queue.top().second;
            m_queue.pop();
            if (isPlayed(m_events[track], timeBase)) {
                writer.put(m_events[track]);
            }
            fetch(track);
        }
        writer.finish(m_end);
    }

private:
    using Turn = std::pair<std::uint64_t, std::size_t>; ///< tick and track

    void fetch(std::size_t track) {
        if (const auto event = m_readers[track].next()) {
            m_events[track] = *event;
            m_queue.emplace(event->tick, track);
        } else {
            m_end = std::max(m_end, m_readers[track].endTick());
        }
    }

    std::vector<TrackReader> m_readers;
    std::vector<SongEvent> m_events;
    std::priority_queue<Turn, std::vector<Turn>, std::greater<>> m_queue;
    std::uint64_t m_end = 0;
};

/// Sequences one after the other, each with the tempo and the meter that it would have alone.
class Joiner {
public:
    Joiner(const ByteView& song, TrackWriter& writer, const TimeBase& timeBase)
        : m_song(song), m_writer(writer), m_timeBase(timeBase) {}

    void add(const TrackSpan& sequence) {
        restoreDefaults(sequence);
        TrackReader reader(m_song, sequence);
        while (auto event = reader.next()) {
            follow(*event);
            event->tick += m_start;
            if (isPlayed(*event, m_timeBase)) {
                m_writer.put(*event);
            }
        }
        m_start = std::min(m_start + reader.endTick(), kLatestTick);
    }
    void finish() {
        m_writer.finish(m_start);
    }

private:
    void restoreDefaults(const TrackSpan& sequence);
    void follow(const SongEvent& event);

    const ByteView& m_song;
    TrackWriter& m_writer;
    const TimeBase& m_timeBase;
    std::uint64_t m_start = 0; ///< of the sequence, in the file's ticks
    bool m_defaultTempo = true;
    bool m_defaultMeter = true;
};

void Joiner::restoreDefaults(const TrackSpan& sequence) {
    bool tempo = false;
    bool meter = false;
    TrackReader reader(m_song, sequence);
    for (auto event = reader.next(); event && event->tick == 0; event = reader.next()) {
        tempo = tempo || event->isMeta(kTempo);
        meter = meter || event->isMeta(kTimeSignature);
    }
    if (!tempo && !m_defaultTempo && m_timeBase.fixedTempo == 0) {
        m_writer.putTempo(m_start, kDefaultTempo);
        m_defaultTempo = true;
    }
    if (!meter && !m_defaultMeter) {
        m_writer.put({m_start, kMetaEvent, kTimeSignature, kDefaultMeter});
        m_defaultMeter = true;
    }
}

void Joiner::follow(const SongEvent& event) {
    if (event.isMeta(kTempo)) {
        const ByteView data(event.data);
        m_defaultTempo = data.number(0, 3) == kDefaultTempo;
    } else if (event.isMeta(kTimeSignature)) {
        m_defaultMeter = std::equal(event.data.begin(), event.data.end(), kDefaultMeter.begin(),
                                    kDefaultMeter.end());
    }
}

class SongWriter {
public:
    SongWriter(const ByteView& song, const TimeBase& timeBase)
        : m_song(song), m_timeBase(timeBase) {
        m_bytes.reserve(song.size());
    }

    void header(std::uint16_t format, std::size_t trackCount) {
        appendTag(m_bytes, kHeaderTag);
        appendNumber(m_bytes, kHeaderLength, 4);
        appendNumber(m_bytes, format, 2);
        appendNumber(m_bytes, static_cast<std::uint32_t>(trackCount), 2);
        appendNumber(m_bytes, m_timeBase.division, 2);
    }

    void joined(Spans sequences) {
        TrackWriter writer = nextTrack();
        Joiner joiner(m_song, writer, m_timeBase);
        for (const TrackSpan& sequence : sequences) {
            joiner.add(sequence);
        }
        joiner.finish();
    }

    void merged(Spans tracks) {
        TrackWriter writer = nextTrack();
        Merger(m_song, tracks).writeTo(writer, m_timeBase);
    }

    std::vector<std::uint8_t> take() {
        return std::move(m_bytes);
    }

private:
    TrackWriter nextTrack() {
        TrackWriter writer(m_bytes, m_timeBase);
        if (m_first && m_timeBase.fixedTempo != 0) {
            writer.putTempo(0, m_timeBase.fixedTempo);
        }
        m_first = false;
        return writer;
    }

    const ByteView& m_song;
    const TimeBase& m_timeBase;
    std::vector<std::uint8_t> m_bytes;
    bool m_first = true;
};

} // namespace

std::vector<std::uint8_t> writeSong(const ByteView& song, std::uint16_t format,
                                    const std::vector<TrackSpan>& tracks,
                                    const TimeBase& timeBase) {
    SongWriter writer(song, timeBase);
    if (format == kSequences) {
        writer.header(kSingleTrack, 1);
        writer.joined(tracks);
        return writer.take();
    }
    // Neighbours share a track, the last ones first, so that the leading tracks stay as they are.
    const std::size_t count = std::min(tracks.size(), kMaxTracks);
    const std::size_t each = tracks.size() / count;
    const std::size_t alone = count - tracks.size() % count; ///< tracks that take one less
    const bool single = count == 1 && format != kSeveralTracks;
    writer.header(single ? kSingleTrack : kSeveralTracks, count);
    Spans rest(tracks);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t share = i < alone ? each : each + 1;
        writer.merged(rest.first(share));
        rest = rest.subspan(share);
    }
    return writer.take();
}

} // namespace host
