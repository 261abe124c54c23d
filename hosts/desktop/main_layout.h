// Where everything lies in the main window, from its size alone.
#pragma once

#include <vector>

#include "desktop/boxes.h"

namespace desktop {

/// What the listener wants to see.
struct Shown {
    bool playList = true;
    bool mixer = false;
    bool wordsAlone = false; ///< full screen: nothing but the words
    int messageHeight = 0;   ///< pixels of a message above everything; 0 = there is none
};

/// One control of the transport strip, as wide as its text needs.
struct StripItem {
    int width = 0;
    bool beginsGroup = false; ///< stands apart from the one before
};

/// An empty box is not shown.
struct MainBoxes {
    Box message;
    Box words;
    Box playList;
    Box mixer;
    Box position;
    std::vector<Box> strip; ///< a box for each item
};

/// The smallest client area in which nothing is cut, in lengths for 96 dots to the inch.
constexpr Size kSmallestClient = {510, 345};

/// What is shown beside the words moves below them, beside them or over them, as there is room.
MainBoxes layoutMain(Size client, const Scale& scale, const Shown& shown,
                     const std::vector<StripItem>& strip);

} // namespace desktop
