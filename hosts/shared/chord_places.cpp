// Places chord names over words.
#include "shared/chord_places.h"

#include <algorithm>

namespace host {

namespace {

/// Where a chord should stand: over its syllable's first letter, not over the space that leads to it. A chord
/// that is played while the syllable before is held leaves that place to the next one.
int wantedPlace(const Line& line, std::size_t index, const std::vector<int>& edges,
                const TextMeasure& measure, int gap) {
    const Chord& chord = line.chords[index];
    const std::size_t syllable = std::min(chord.syllable, line.syllables.size());
    const bool inside = syllable > 0 && syllable < line.syllables.size();
    const bool space = inside && line.syllables[syllable].text.starts_with(' ');
    const int place = edges[syllable] + (space ? measure(" ") : 0);
    const bool held =
        inside && index + 1 < line.chords.size() && line.chords[index + 1].syllable == syllable;
    return held ? place - measure(chord.name) - gap : place;
}

} // namespace

std::vector<int> chordPlaces(const Line& line, const std::vector<int>& edges,
                             const TextMeasure& measure, int gap) {
    std::vector<int> places;
    int earliest = 0;
    for (std::size_t i = 0; i < line.chords.size(); ++i) {
        places.push_back(std::max(wantedPlace(line, i, edges, measure, gap), earliest));
        earliest = places.back() + measure(line.chords[i].name) + gap;
    }
    return places;
}

} // namespace host
