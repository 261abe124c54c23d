// karaoke info: facts about a song.
#include <cstdio>

#include "karaoke/commands.h"
#include "karaoke/info_json.h"
#include "karaoke/song_reader.h"
#include "shared/gm_names.h"
#include "shared/song.h"
#include "shared/song_events.h"
#include "shared/song_facts.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

void printFact(const char* name, const std::string& value) {
    std::printf("%-16s%s\n", name, value.c_str());
}

std::string tempoText(std::uint32_t tempo) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f beats a minute (%u us per quarter note)",
                  host::beatsPerMinute(tempo), static_cast<unsigned>(tempo));
    return text;
}

std::string signatureText(const host::TimeSignature& signature) {
    return std::to_string(signature.beatsPerBar) + "/" + std::to_string(signature.beatUnit);
}

/// The first time signature, and how many follow it.
std::string signaturesText(const host::Song& song) {
    const auto signatures = song.bars.signatures();
    std::string text = signatureText(signatures.front());
    if (signatures.size() > 1) {
        const std::size_t changes = signatures.size() - 1;
        text += ", " + std::to_string(changes) + (changes == 1 ? " change" : " changes") + " later";
    }
    return text;
}

std::string programText(int channel, int program) {
    std::string text = std::to_string(program + 1);
    if (channel != host::kDrumChannel) {
        text += " " + std::string(host::instrumentName(program));
    }
    return text;
}

void printChannels(const host::RawSong& raw) {
    for (const host::ChannelUse& use : host::channelsInUse(raw.events)) {
        std::string programs;
        for (const int program : use.programs) {
            programs += (programs.empty() ? "" : ", ") + programText(use.channel, program);
        }
        if (programs.empty()) {
            programs = "no program";
        }
        const char* drums = use.channel == host::kDrumChannel ? " (drums)" : "";
        std::printf("Channel %2d%s: %s, %zu notes\n", use.channel + 1, drums, programs.c_str(),
                    use.notes);
    }
}

void printMarkers(const host::Song& song) {
    for (const host::Marker& marker : song.markers) {
        std::printf("Marker [%s] %s\n",
                    host::timeWithTenths(song.timeline.secondsAt(marker.tick)).c_str(),
                    marker.name.c_str());
    }
}

void printSong(const host::RawSong& raw, const host::Song& song) {
    printFact("Title:", song.title);
    if (!song.subtitle.empty()) {
        printFact("", song.subtitle);
    }
    printFact("Format:", std::to_string(raw.format));
    printFact("Tracks:", std::to_string(raw.tracks));
    printFact("Duration:", host::timeWithTenths(song.seconds()));
    printFact("Length:", std::to_string(song.endTick) + " ticks");
    printFact("Tempo:", tempoText(raw.firstTempo));
    printFact("Key:", host::keyName(raw.keySignature));
    printFact("Time signature:", signaturesText(song));
    printFact("Bars:", std::to_string(song.bars.at(song.endTick).bar));
    printFact("Division:", std::to_string(raw.division) + " ticks per quarter note");
    printFact("Events:", std::to_string(raw.events.size()));
    printFact("Lyrics:", std::to_string(song.syllableCount()));
    printFact("Chords:", std::to_string(song.chordCount()));
    printFact("Markers:", std::to_string(song.markers.size()));
    printFact("Encoding:", song.encoding);
}

} // namespace

int runInfo(const InfoOptions& options) {
    const host::RawSong raw = readSong(options.song.file);
    const host::Song song =
        host::songForDisplay(raw, options.song.file, {.encoding = options.song.encoding});
    if (options.json) {
        std::printf("%s\n", infoJson(raw, song).c_str());
        return 0;
    }
    printSong(raw, song);
    printMarkers(song);
    printChannels(raw);
    return 0;
}

} // namespace karaoke
