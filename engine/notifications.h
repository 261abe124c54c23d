// Posting notifications to the host's window.
#pragma once

#include <cstdint>

#include "corvmo32_notifications.h"
#include "engine/globals.h"
#include "engine/shared_field.h"

/// True when the player's options word asks for a kind of notification (MMOPT_... bits, any of them).
inline bool wants(const MIDIOUT& player, std::uint32_t options) noexcept {
    return (loadShared<std::uint32_t>(&player.options) & options) != 0;
}

/// Posts, never waits; a message that the window cannot take is lost.
inline void post(UINT message, WPARAM wParam, std::uint32_t lParam) noexcept {
    // A post to no window would land in the calling thread's own queue.
    if (const HWND window = g_hwndNotify.load(std::memory_order_relaxed)) {
        PostMessageA(window, message, wParam, static_cast<LPARAM>(lParam));
    }
}
