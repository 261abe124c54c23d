// What still sounds after a log of sent messages: notes without an end, pedals held down.
#pragma once

#include <string>
#include <vector>

#include "tests/support/machine.h"

/// One line for each note that still sounds and each pedal (sustain, sostenuto) still held.
std::vector<std::string> stillSounding(const std::vector<Sent>& log);
