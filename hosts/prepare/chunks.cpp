// Where the tracks of a song lie in its bytes.
#include "prepare/chunks.h"

#include <algorithm>
#include <optional>
#include <string>

namespace host {

namespace {

constexpr std::size_t kMostTracks = 65535;

/// How far the events of a track can be followed.
struct Walk {
    std::optional<std::size_t> end; ///< behind its first end-of-track event
    bool passedDeclared = false;    ///< an event ends where the chunk's length says
};

class TrackLocator {
public:
    TrackLocator(const ByteView& song, const SongHeader& header, Notes& notes)
        : m_song(song), m_declared(header.trackCount), m_notes(notes), m_position(header.end) {}

    std::vector<TrackSpan> locate();

private:
    bool isTrack(std::size_t position) const {
        return m_song.hasTag(position, kTrackTag) && position + kChunkHeadSize <= m_song.size();
    }
    bool isBoundary(std::uint64_t position) const;
    bool looksLikeTrack(std::size_t position) const;
    std::size_t nextTrack(std::size_t from);
    Walk walk(std::size_t begin, std::size_t end, std::uint64_t declaredEnd) const;
    TrackSpan spanAt(std::size_t position);
    TrackSpan spanOfWrongLength(std::size_t begin, std::uint64_t declaredEnd);
    bool advance();
    void noteCount();

    const ByteView& m_song;
    std::size_t m_declared;
    Notes& m_notes;
    std::size_t m_position;
    std::size_t m_nextTrack = 0; ///< what nextTrack found last
    std::vector<TrackSpan> m_tracks;
    std::size_t m_wrongLengths = 0;
    std::size_t m_strayBytes = 0;
    std::size_t m_foreignChunks = 0;
};

bool TrackLocator::isBoundary(std::uint64_t end) const {
    if (end > m_song.size()) {
        return false;
    }
    const auto position = static_cast<std::size_t>(end);
    return position == m_song.size() || isTrack(position) || isForeignChunk(m_song, position);
}

/// A track's tag with a first event behind it: the tag alone may be part of a text.
bool TrackLocator::looksLikeTrack(std::size_t position) const {
    if (!isTrack(position)) {
        return false;
    }
    RawEvent event;
    const Reading reading = readRawEvent(m_song, position + kChunkHeadSize, m_song.size(),
                                         kNoRunningStatus, Rigour::Strict, event);
    return reading == Reading::Event || m_song.number(position + kTagSize, 4) == 0 ||
           (reading == Reading::CutOff && event.status != 0);
}

/// @return the size of the song when there is none
std::size_t TrackLocator::nextTrack(std::size_t from) {
    if (m_nextTrack < from || m_nextTrack == 0) {
        m_nextTrack = m_song.find(kTrackTag, from, m_song.size());
        while (m_nextTrack < m_song.size() && !looksLikeTrack(m_nextTrack)) {
            m_nextTrack = m_song.find(kTrackTag, m_nextTrack + 1, m_song.size());
        }
    }
    return m_nextTrack;
}

Walk TrackLocator::walk(std::size_t begin, std::size_t end, std::uint64_t declaredEnd) const {
    Walk result;
    std::size_t position = begin;
    int running = kNoRunningStatus;
    while (position < end) {
        RawEvent event;
        if (readRawEvent(m_song, position, end, running, Rigour::AsPlayed, event) !=
            Reading::Event) {
            break;
        }
        position = event.dataEnd;
        running = runningAfter(event.status, running, Rigour::AsPlayed);
        if (event.isEndOfTrack()) {
            result.end = position;
            break;
        }
        result.passedDeclared = result.passedDeclared || position == declaredEnd;
    }
    return result;
}

TrackSpan TrackLocator::spanAt(std::size_t position) {
    const std::size_t begin = position + kChunkHeadSize;
    const std::uint64_t declaredEnd = ByteView::endOf(begin, m_song.number(position + kTagSize, 4));
    if (!isBoundary(declaredEnd)) {
        return spanOfWrongLength(begin, declaredEnd);
    }
    const auto end = static_cast<std::size_t>(declaredEnd);
    const Walk events = walk(begin, end, declaredEnd);
    if (events.end && *events.end < end && isTrack(*events.end)) {
        ++m_wrongLengths;
        return {.begin = begin, .end = *events.end, .lengthHolds = false};
    }
    return {.begin = begin, .end = end};
}

/// The length leads nowhere: to no other chunk and not to the end of the file.
TrackSpan TrackLocator::spanOfWrongLength(std::size_t begin, std::uint64_t declaredEnd) {
    const std::size_t limit = nextTrack(begin);
    const Walk events = walk(begin, limit, declaredEnd);
    const bool inside = declaredEnd <= limit;
    const bool lastOne = m_tracks.size() + 1 >= m_declared && limit == m_song.size();
    const bool complete =
        events.end && (*events.end == declaredEnd || (*events.end < declaredEnd && lastOne));
    const bool endless = !events.end && events.passedDeclared && declaredEnd > begin;
    if (inside && (complete || endless)) {
        // Other bytes follow the track; its length is right.
        return {.begin = begin, .end = static_cast<std::size_t>(declaredEnd)};
    }
    if (events.end) {
        ++m_wrongLengths;
        return {.begin = begin, .end = *events.end, .lengthHolds = false};
    }
    const bool cut = limit == m_song.size() && declaredEnd > m_song.size();
    m_wrongLengths += cut ? 0 : 1;
    return {
        .begin = begin, .end = limit, .lengthHolds = false, .cutByFile = limit == m_song.size()};
}

/// Goes to the next track; what lies before it counts as skipped once there is one.
bool TrackLocator::advance() {
    std::size_t foreign = 0;
    while (isForeignChunk(m_song, m_position) && !m_song.hasTag(m_position, kHeaderTag)) {
        m_position += kChunkHeadSize + m_song.number(m_position + kTagSize, 4);
        ++foreign;
    }
    std::size_t stray = 0;
    if (!isTrack(m_position)) {
        const bool another = m_song.hasTag(m_position, kHeaderTag);
        if (another || (m_tracks.size() >= m_declared && m_wrongLengths == 0)) {
            return false;
        }
        const std::size_t next = nextTrack(m_position);
        stray = next - std::min(m_position, next);
        m_position = next;
    }
    if (m_position >= m_song.size()) {
        return false;
    }
    m_foreignChunks += foreign;
    m_strayBytes += stray;
    return true;
}

void TrackLocator::noteCount() {
    if (m_foreignChunks != 0) {
        m_notes.add(countOf(m_foreignChunks, "chunk") + " of other kinds between the tracks" +
                    (m_foreignChunks == 1 ? " was" : " were") + " skipped");
    }
    if (m_strayBytes != 0) {
        m_notes.add(countOf(m_strayBytes, "byte") + " between the tracks that belong to none" +
                    (m_strayBytes == 1 ? " was" : " were") + " skipped");
    }
    if (m_wrongLengths != 0) {
        m_notes.add(countOf(m_wrongLengths, "track") + " had a wrong length and" +
                    (m_wrongLengths == 1 ? " was" : " were") + " read as far as " +
                    (m_wrongLengths == 1 ? "its" : "their") + " events go");
    }
    if (m_tracks.size() != m_declared && !m_tracks.empty()) {
        m_notes.add("the header speaks of " + countOf(m_declared, "track") + ", the file has " +
                    std::to_string(m_tracks.size()));
    }
}

std::vector<TrackSpan> TrackLocator::locate() {
    while (m_tracks.size() < kMostTracks && advance()) {
        m_tracks.push_back(spanAt(m_position));
        m_position = m_tracks.back().end;
    }
    noteCount();
    return std::move(m_tracks);
}

} // namespace

std::vector<TrackSpan> locateTracks(const ByteView& song, const SongHeader& header, Notes& notes) {
    return TrackLocator(song, header, notes).locate();
}

} // namespace host
