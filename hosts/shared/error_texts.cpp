// The engine's error codes in words.
#include "shared/error_texts.h"

#include "corvmo32.h"

namespace host {

std::string errorText(std::uint32_t code) {
    switch (code) {
    case ENGINE_ERR_CHUNK:
        return "damaged: a track does not begin where it should";
    case ENGINE_ERR_STATUS:
        return "damaged: a track has a byte where no MIDI event can begin";
    case ENGINE_ERR_SYSEX:
        return "damaged: a system-exclusive event has no proper length or end";
    case ENGINE_ERR_TIMER:
        return "the system's timer cannot be started";
    case ENGINE_ERR_ALLOC:
    case ENGINE_ERR_LOCK:
        return "not enough memory";
    case ENGINE_ERR_FILE:
        return "not a MIDI file that can be played";
    case ENGINE_ERR_READ:
        return "the file cannot be read";
    default:
        return "error " + std::to_string(code);
    }
}

} // namespace host
