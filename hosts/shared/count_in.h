// Counts a singer in: how many beats it is until a line begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shared/lyric_lines.h"
#include "shared/timeline.h"

namespace host {

/// @param line  the one that is to be sung next
/// @param tick  where the song stands
/// @return the beats that are left before a line with words that follows a pause, 4 to 1; 0 = there is nothing
///         to count: the pause is too short, the line is further off or has begun
int countIn(const std::vector<Line>& lines, std::size_t line, const Timeline& timeline,
            std::uint32_t tick);

} // namespace host
