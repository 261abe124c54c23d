// Where a song stands and how it is played, in words.
#pragma once

#include <string>

#include "karaoke/desk.h"

namespace karaoke {

/// "0:11 / 1:56   bar 13:3   88 bpm   3/4", with what the listener has changed.
/// @param width  columns that the text may take
std::string statusText(const Desk& desk, int width);

/// "Daisy Bell - Harry Dacre, 1892", and the song that plays along.
std::string titleText(const Desk& desk);

/// The notice, as long as it is to be seen, otherwise what the desk has to say.
std::string noticeText(const Desk& desk);

} // namespace karaoke
