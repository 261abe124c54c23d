// What the player shows its listener.
#include "karaoke/song_view.h"

#include <cstdio>

namespace karaoke {

void SongView::report(const std::string& message) {
    std::fprintf(stderr, "karaoke: %s\n", message.c_str());
}

} // namespace karaoke
