// Texts that the program draws, with the place that each was given.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

struct DrawnText {
    std::wstring text;
    RECT place;      ///< where it may be
    SIZE size;       ///< what it takes
    COLORREF colour; ///< of its letters
    LONG shownUpTo;  ///< where drawing ends, to the right
};

/// Takes note of every text that this program draws from now on.
class DrawnTexts {
public:
    DrawnTexts();
    ~DrawnTexts();
    DrawnTexts(const DrawnTexts&) = delete;
    DrawnTexts& operator=(const DrawnTexts&) = delete;

    /// Since the last call.
    static std::vector<DrawnText> take();
};
