// Puts functions that take note in front of the system's that draw text.
#include "tests/desktop/drawn_texts.h"

#include <utility>

#include "tests/support/import_table.h"

namespace {

std::vector<DrawnText> drawn;
const void* systemDrawText = nullptr;
const void* systemTextOut = nullptr;

template <typename Function>
Function* as(const void* address) {
    return reinterpret_cast<Function*>(const_cast<void*>(address));
}

void note(HDC dc, const wchar_t* text, int length, const RECT& place) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text, length, &size);
    RECT clip{};
    GetClipBox(dc, &clip);
    drawn.push_back(
        {{text, static_cast<std::size_t>(length)}, place, size, GetTextColor(dc), clip.right});
}

int WINAPI drawTextAndNote(HDC dc, const wchar_t* text, int length, RECT* place, UINT format) {
    if ((format & DT_CALCRECT) == 0) {
        note(dc, text, length, *place);
    }
    return as<decltype(DrawTextW)>(systemDrawText)(dc, text, length, place, format);
}

/// Drawn without a box: the rest of the picture is its place.
BOOL WINAPI textOutAndNote(HDC dc, int x, int y, const wchar_t* text, int length) {
    BITMAP picture{};
    GetObjectW(GetCurrentObject(dc, OBJ_BITMAP), sizeof picture, &picture);
    note(dc, text, length, {x, y, picture.bmWidth, picture.bmHeight});
    return as<decltype(TextOutW)>(systemTextOut)(dc, x, y, text, length);
}

const void* replace(const char* name, const void* function) {
    return replaceImport(GetModuleHandleW(nullptr), name, function);
}

} // namespace

DrawnTexts::DrawnTexts() {
    systemDrawText = replace("DrawTextW", reinterpret_cast<const void*>(&drawTextAndNote));
    systemTextOut = replace("TextOutW", reinterpret_cast<const void*>(&textOutAndNote));
    drawn.clear();
}

DrawnTexts::~DrawnTexts() {
    replace("DrawTextW", systemDrawText);
    replace("TextOutW", systemTextOut);
}

std::vector<DrawnText> DrawnTexts::take() {
    return std::exchange(drawn, {});
}
