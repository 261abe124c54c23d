// The notes of a mending, and the words for what is wrong in a track.
#include "prepare/notes.h"

#include <array>

#include "prepare/track_reader.h"

namespace host {

namespace {

constexpr std::size_t kMostNotes = 100;

constexpr std::array<const char*, 10> kOrdinals{"first", "second",  "third",  "fourth", "fifth",
                                                "sixth", "seventh", "eighth", "ninth",  "tenth"};

std::string messages(std::uint64_t number) {
    return countOf(number, "system-exclusive message");
}

std::string were(std::uint64_t number) {
    return number == 1 ? " was " : " were ";
}

void noteDamage(const TrackFindings& findings, const std::string& track, Notes& notes) {
    if (findings.skips != 0) {
        notes.add(track + " is damaged in " + countOf(findings.skips, "place") + ": " +
                  countOf(findings.skippedBytes, "byte") + were(findings.skippedBytes) + "skipped");
    }
    if (findings.unreadable) {
        notes.add(track + " is damaged and ended early: its rest cannot be read");
    }
    if (findings.cutOff) {
        notes.add(track + " was cut off and ended early");
    } else if (!findings.hasEnd && !findings.unreadable) {
        notes.add(track + " had no end-of-track event and was given one");
    }
    if (findings.statusesAdded) {
        notes.add(track + " lacked status bytes behind real-time messages; they were added");
    }
    if (findings.bytesBehindEnd != 0) {
        notes.add(track + " goes on with " + countOf(findings.bytesBehindEnd, "byte") +
                  " behind its end that are no events; left out");
    }
    if (findings.endedNotes != 0) {
        notes.add(track + " left " + countOf(findings.endedNotes, "note") +
                  " sounding where it broke off; ended there");
    }
}

void noteSystemExclusives(const TrackFindings& findings, const std::string& track, Notes& notes) {
    const auto tell = [&](std::uint64_t number, const std::string& what) {
        if (number != 0) {
            notes.add(track + ": " + messages(number) + what);
        }
    };
    tell(findings.joined, " came in parts; joined");
    tell(findings.closed, " had no end; closed");
    tell(findings.unfinished, " began and never ended; left out");
    tell(findings.tooLong, " too long to be played; left out");
    tell(findings.longLengths, " had their length written in an unusual way; rewritten");
    if (findings.escapes != 0) {
        notes.add(track + ": " + countOf(findings.escapes, "block") +
                  " of raw bytes (escape events)" + were(findings.escapes) + "left out");
    }
}

} // namespace

void Notes::add(std::string note) {
    if (++m_count <= kMostNotes) {
        m_lines.push_back(std::move(note));
    }
}

std::vector<std::string> Notes::take() {
    if (m_count > kMostNotes) {
        m_lines.push_back("and " + countOf(m_count - kMostNotes, "further mending"));
    }
    return std::move(m_lines);
}

std::string countOf(std::uint64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string nameOfTrack(std::size_t index, std::size_t count) {
    if (count == 1) {
        return "the track";
    }
    return index < kOrdinals.size() ? std::string("the ") + kOrdinals[index] + " track"
                                    : "track " + std::to_string(index + 1);
}

void noteFindings(const TrackFindings& findings, const std::string& track, Notes& notes) {
    noteDamage(findings, track, notes);
    noteSystemExclusives(findings, track, notes);
}

} // namespace host
