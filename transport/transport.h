// What the transport's files share. The lock is held.
#pragma once

#include "corvmo32_records.h"

/// Makes the whole song the one play range: once, or practically endlessly for a song that ends on a beat.
void setWholeSong(MIDIOUT& player) noexcept;
