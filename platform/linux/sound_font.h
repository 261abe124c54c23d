// The sound font that the host has chosen for the software synthesizer, or the system's.
#pragma once

class Synthesizer;

/// False when there is none, or the chosen file is no sound font; the synthesizer stays silent then.
bool loadChosenFont(Synthesizer& synthesizer);
