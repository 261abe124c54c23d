// Moving a player to another position.
#pragma once

#include <cstdint>

#include "corvmo32_records.h"

/// Moves the cursors and the position to a tick, takes tempo and time signature from the channel map, and
/// posts the notifications of a seek. Nothing is sent. The lock is held.
void seek(MIDIOUT& player, std::uint32_t tick) noexcept;
