// The colours of what the program draws itself: light letters on a dark ground, that carry across a room.
#pragma once

#include <windows.h>

namespace desktop {

inline constexpr COLORREF kGround = RGB(12, 14, 28);
inline constexpr COLORREF kComing = RGB(255, 255, 255);
inline constexpr COLORREF kSung = RGB(255, 190, 40);
inline constexpr COLORREF kOtherLine = RGB(150, 156, 180);
inline constexpr COLORREF kChordColour = RGB(110, 200, 220);
inline constexpr COLORREF kChordNow = RGB(190, 245, 255);
inline constexpr COLORREF kTitleColour = RGB(140, 146, 170);

inline constexpr COLORREF kPanel = RGB(28, 31, 48);
inline constexpr COLORREF kPanelText = RGB(225, 228, 240);
inline constexpr COLORREF kPanelFaint = RGB(150, 156, 180);
inline constexpr COLORREF kTrough = RGB(52, 57, 82);
inline constexpr COLORREF kLevel = RGB(64, 112, 176);
inline constexpr COLORREF kLoopRange = RGB(70, 120, 84);
inline constexpr COLORREF kMarkerTick = RGB(150, 156, 180);
inline constexpr COLORREF kFocus = RGB(255, 190, 40);
inline constexpr COLORREF kMuted = RGB(190, 70, 60);
inline constexpr COLORREF kSolo = RGB(60, 140, 80);
inline constexpr COLORREF kLightOn = RGB(90, 230, 120);
inline constexpr COLORREF kLightOff = RGB(48, 54, 70);

} // namespace desktop
