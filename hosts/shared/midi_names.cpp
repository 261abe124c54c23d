// Names of notes and controllers.
#include "shared/midi_names.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

constexpr int kNotesPerOctave = 12;
constexpr int kLowestOctave = -1;
constexpr std::array<std::string_view, kNotesPerOctave> kNotes = {
    "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

constexpr std::array<std::pair<int, std::string_view>, 48> kControllers = {{
    {0, "bank"},
    {1, "modulation"},
    {2, "breath"},
    {4, "foot"},
    {5, "portamento time"},
    {6, "data entry"},
    {7, "volume"},
    {8, "balance"},
    {10, "pan"},
    {11, "expression"},
    {12, "effect 1"},
    {13, "effect 2"},
    {32, "bank, fine"},
    {33, "modulation, fine"},
    {38, "data entry, fine"},
    {39, "volume, fine"},
    {42, "pan, fine"},
    {43, "expression, fine"},
    {64, "sustain pedal"},
    {65, "portamento"},
    {66, "sostenuto pedal"},
    {67, "soft pedal"},
    {68, "legato"},
    {69, "hold 2"},
    {71, "resonance"},
    {72, "release time"},
    {73, "attack time"},
    {74, "brightness"},
    {84, "portamento from"},
    {91, "reverb"},
    {92, "tremolo"},
    {93, "chorus"},
    {94, "detune"},
    {95, "phaser"},
    {96, "data increment"},
    {97, "data decrement"},
    {98, "non-registered parameter, fine"},
    {99, "non-registered parameter"},
    {100, "registered parameter, fine"},
    {101, "registered parameter"},
    {120, "all sound off"},
    {121, "reset controllers"},
    {122, "local control"},
    {123, "all notes off"},
    {124, "omni off"},
    {125, "omni on"},
    {126, "one voice"},
    {127, "several voices"},
}};

} // namespace

std::string noteName(int note) {
    return std::string(kNotes.at(static_cast<std::size_t>(note % kNotesPerOctave))) +
           std::to_string(note / kNotesPerOctave + kLowestOctave);
}

std::string_view controllerName(int controller) {
    const auto* const found =
        std::find_if(kControllers.begin(), kControllers.end(),
                     [controller](const auto& entry) { return entry.first == controller; });
    return found == kControllers.end() ? std::string_view() : found->second;
}

} // namespace host
