// Songs made ready for the engine: the order in which a file is looked through and mended.
#include "prepare/prepare_song.h"

#include <string>

#include "prepare/chunks.h"
#include "prepare/container.h"
#include "prepare/notes.h"
#include "prepare/song_writer.h"
#include "prepare/time_base.h"
#include "prepare/track_reader.h"

namespace host {

namespace {

constexpr std::uint64_t kLargestFile = 0x7FFFFFFF;

/// What all tracks hold together.
struct Contents {
    std::size_t events = 0;
    std::size_t tempos = 0;
};

TrackReader readThrough(const ByteView& song, const TrackSpan& span) {
    TrackReader reader(song, span);
    while (reader.next()) {
    }
    return reader;
}

/// Finds out how a track can be read, and what is wrong in it.
/// @param span  receives its true end and the rigour that it needs
TrackFindings survey(const ByteView& song, TrackSpan& span) {
    const TrackReader asPlayed = readThrough(song, span);
    if (!asPlayed.failed()) {
        return asPlayed.findings();
    }
    if (asPlayed.findings().hasEnd) {
        const std::size_t behind = span.end - asPlayed.lastEnd();
        span.end = asPlayed.lastEnd();
        TrackFindings findings = readThrough(song, span).findings();
        findings.bytesBehindEnd = behind;
        return findings;
    }
    span.rigour = Rigour::Strict;
    TrackFindings findings = readThrough(song, span).findings();
    findings.statusesAdded = !findings.isBroken();
    return findings;
}

Contents surveyTracks(const ByteView& song, std::vector<TrackSpan>& tracks, Notes& notes) {
    Contents contents;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const TrackFindings findings = survey(song, tracks[i]);
        noteFindings(findings, nameOfTrack(i, tracks.size()), notes);
        contents.events += findings.events;
        contents.tempos += findings.tempos;
    }
    return contents;
}

void noteFormat(std::uint16_t format, std::size_t trackCount, Notes& notes) {
    if (format == kSequences) {
        notes.add(trackCount == 1 ? "the song was of format 2, with one sequence"
                                  : "the file's " + std::to_string(trackCount) +
                                        " separate sequences (format 2) were joined into one song");
    } else if (format > kSequences) {
        notes.add("the header names a format that does not exist (" + std::to_string(format) + ")");
    }
    if (format != kSequences && trackCount > kMaxTracks) {
        notes.add(std::to_string(trackCount) + " tracks are too many to be played; merged into " +
                  std::to_string(kMaxTracks));
    }
}

void noteTempos(std::size_t tempos, Notes& notes) {
    if (tempos != 0) {
        notes.add(countOf(tempos, "tempo change") + (tempos == 1 ? " was" : " were") +
                  " left out: they mean nothing to times in video frames");
    }
}

PreparedSong failed(std::string reason) {
    PreparedSong result;
    result.error = std::move(reason);
    return result;
}

PreparedSong mend(std::span<const std::uint8_t> file, const ByteView& song, Notes& notes) {
    std::string error;
    const SongHeader header = readHeader(song, notes, error);
    if (!error.empty()) {
        return failed(error);
    }
    std::vector<TrackSpan> tracks = locateTracks(song, header, notes);
    if (tracks.empty()) {
        return failed("damaged: the file has no track");
    }
    noteFormat(header.format, tracks.size(), notes);
    const TimeBase timeBase = timeBaseOf(header.division, notes);
    const Contents contents = surveyTracks(song, tracks, notes);
    noteTempos(timeBase.fixedTempo != 0 ? contents.tempos : 0, notes);
    PreparedSong result;
    if (notes.empty()) {
        result.bytes.assign(file.begin(), file.end());
        return result;
    }
    if (contents.events == 0) {
        return failed("damaged: no event of the file's tracks can be read");
    }
    result.bytes = writeSong(song, header.format, tracks, timeBase);
    result.notes = notes.take();
    result.changed = true;
    return result;
}

} // namespace

PreparedSong prepareSong(std::span<const std::uint8_t> file) {
    if (file.empty()) {
        return failed("the file is empty");
    }
    if (file.size() > kLargestFile) {
        return failed("the file is too large");
    }
    Notes notes;
    const auto song = findSong(file, notes);
    if (song.empty()) {
        return failed("not a MIDI file");
    }
    return mend(file, ByteView(song), notes);
}

} // namespace host
