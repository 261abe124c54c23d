// Prepares a song for display.
#include "shared/song.h"

#include <algorithm>
#include <filesystem>
#include <numeric>

#include "shared/encoding_guess.h"
#include "shared/utf8.h"

namespace host {

namespace {

void addTexts(std::vector<std::string>& texts, const std::vector<TimedBytes>& table) {
    for (const TimedBytes& entry : table) {
        texts.push_back(entry.bytes);
    }
}

/// The lyrics of a song belong together: a character may be spread over two of them.
std::string joined(const std::vector<TimedBytes>& lyrics) {
    return std::accumulate(
        lyrics.begin(), lyrics.end(), std::string(),
        [](std::string all, const TimedBytes& lyric) { return std::move(all) + lyric.bytes; });
}

std::string encodingOf(const RawSong& raw, const DisplayOptions& options) {
    if (!options.encoding.empty()) {
        return options.encoding;
    }
    std::vector<std::string> texts = {raw.title, raw.title2, joined(raw.lyrics)};
    addTexts(texts, raw.chords);
    addTexts(texts, raw.markers);
    return guessEncoding(texts);
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string nameOfFile(const std::string& path) {
    const std::u8string file =
        std::filesystem::path(std::u8string(path.begin(), path.end())).stem().u8string();
    const std::string name(file.begin(), file.end());
    return isUtf8(name) ? withoutControls(name) : TextDecoder(kWesternEuropean).text(name);
}

std::vector<Marker> decodeMarkers(const RawSong& raw, const TextDecoder& decoder) {
    std::vector<Marker> markers;
    for (const TimedBytes& marker : raw.markers) {
        markers.push_back({marker.tick, trimmed(decoder.text(marker.bytes))});
    }
    return markers;
}

} // namespace

bool Song::hasWords() const {
    return syllableCount() > 0;
}

std::size_t Song::syllableCount() const {
    return std::accumulate(
        lines.begin(), lines.end(), std::size_t{0},
        [](std::size_t sum, const Line& line) { return sum + line.syllables.size(); });
}

std::size_t Song::chordCount() const {
    return std::accumulate(
        lines.begin(), lines.end(), std::size_t{0},
        [](std::size_t sum, const Line& line) { return sum + line.chords.size(); });
}

Song songForDisplay(const RawSong& raw, const std::string& path, const DisplayOptions& options) {
    const std::string encoding = encodingOf(raw, options);
    const TextDecoder decoder(encoding);
    std::vector<Line> lines = buildLines(raw.lyrics, decoder);
    placeChords(lines, raw.chords, decoder, raw.division);
    const std::string title = trimmed(decoder.text(raw.title));
    return {
        .path = path,
        .title = title.empty() ? nameOfFile(path) : title,
        .subtitle = trimmed(decoder.text(raw.title2)),
        .encoding = encoding,
        .division = raw.division,
        .endTick = raw.events.empty() ? 0 : raw.events.back().time,
        .lines = std::move(lines),
        .markers = decodeMarkers(raw, decoder),
        .timeline = Timeline(raw.events, raw.division, options.tempoPercent),
        .bars = BarGrid(raw.events, raw.division),
    };
}

} // namespace host
