// The text tables of a loaded song as readable lines: "960 Hello".
#pragma once

#include <string>
#include <vector>

#include "corvmo32_records.h"

std::vector<std::string> lyricLines(const MIDIOUT& player);
std::vector<std::string> chordLines(const MIDIOUT& player);
std::vector<std::string> markerLines(const MIDIOUT& player);
