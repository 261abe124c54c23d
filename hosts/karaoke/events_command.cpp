// karaoke events: everything that a song does, in the order of time.
#include <algorithm>
#include <cstdio>

#include "karaoke/commands.h"
#include "karaoke/event_text.h"
#include "karaoke/song_reader.h"
#include "shared/song.h"
#include "shared/song_events.h"
#include "shared/text_decoder.h"

namespace karaoke {

namespace {

/// One line of the list.
struct Entry {
    std::uint32_t tick;
    std::string channel;
    EventText text;
};

constexpr const char* kNoChannel = "-";

void addTexts(std::vector<Entry>& entries, const std::vector<host::TimedBytes>& table,
              std::size_t first, const char* kind, const host::TextDecoder& decoder) {
    for (std::size_t i = first; i < table.size(); ++i) {
        const bool lineBreak = table[i].bytes == "\r";
        const std::string text = lineBreak ? "new line" : '"' + decoder.text(table[i].bytes) + '"';
        entries.push_back({table[i].tick, kNoChannel, {kind, text}});
    }
}

/// Events in the order in which they are played; words, chords and markers follow those of their tick.
std::vector<Entry> entriesOf(const host::RawSong& raw, const std::string& encoding) {
    std::vector<Entry> entries;
    for (const MMEVENT& event : raw.events) {
        const std::string channel =
            hasChannel(event) ? std::to_string(host::channelOf(event) + 1) : kNoChannel;
        entries.push_back({event.time, channel, describeEvent(event, raw)});
    }
    const host::TextDecoder decoder(encoding);
    constexpr std::size_t kAfterStartRecord = 1;
    addTexts(entries, raw.lyrics, kAfterStartRecord, "lyric", decoder);
    addTexts(entries, raw.chords, kAfterStartRecord, "chord", decoder);
    addTexts(entries, raw.markers, 0, "marker", decoder);
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.tick < b.tick; });
    return entries;
}

std::string barText(const host::BarPosition& position) {
    return std::to_string(position.bar) + ":" + std::to_string(position.beat);
}

} // namespace

int runEvents(const ReadOptions& options) {
    const host::RawSong raw = readSong(options.file);
    const host::Song song = host::songForDisplay(raw, options.file, {.encoding = options.encoding});
    std::printf("%9s %10s %8s  %2s  %-15s %s\n", "tick", "seconds", "bar:beat", "ch", "event",
                "values");
    for (const Entry& entry : entriesOf(raw, song.encoding)) {
        std::printf("%9u %10.3f %8s  %2s  %-15s %s\n", entry.tick,
                    song.timeline.secondsAt(entry.tick), barText(song.bars.at(entry.tick)).c_str(),
                    entry.channel.c_str(), entry.text.kind.c_str(), entry.text.value.c_str());
    }
    return 0;
}

} // namespace karaoke
