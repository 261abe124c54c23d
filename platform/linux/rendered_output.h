// The software synthesizer as an output whose sound the host takes itself.
#pragma once

#include <memory>

#include "platform/linux/midi_output.h"

/// @param rate  frames a second
std::unique_ptr<MidiOutput> makeRenderedOutput(UINT rate);
