// The questions that the program asks: which songs, which outputs.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <optional>
#include <string>
#include <vector>

#include "desktop/outputs.h"

namespace desktop {

/// Empty when the listener thinks better of it.
std::vector<std::wstring> askForSongs(HWND owner);

/// Nothing when the listener thinks better of it.
std::optional<OutputChoice> askForOutputs(HWND owner, const OutputChoice& before);

/// What was dropped on a window; folders stand for the songs in them.
std::vector<std::wstring> droppedSongs(HDROP drop);

/// Paths with folders replaced by the songs in them.
std::vector<std::wstring> withoutFolders(const std::vector<std::wstring>& paths);

} // namespace desktop
