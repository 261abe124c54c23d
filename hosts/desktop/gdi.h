// What drawing needs of the system, with owners: fonts, a picture in memory, texts in boxes.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>

#include "desktop/boxes.h"

namespace desktop {

inline RECT toRect(const Box& box) {
    return {box.left, box.top, box.right, box.bottom};
}

Size clientSize(HWND window);

/// A font; none when default-made.
class Font {
public:
    Font() = default;
    /// @param height  of its letters, in pixels
    Font(const wchar_t* face, int height, bool bold);
    ~Font();
    Font(Font&& other) noexcept : m_font(std::exchange(other.m_font, nullptr)) {}
    Font& operator=(Font&& other) noexcept {
        std::swap(m_font, other.m_font);
        return *this;
    }
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    HFONT handle() const {
        return m_font;
    }

private:
    HFONT m_font = nullptr;
};

constexpr int kAnyHeight = 10000;

/// The font of the system's messages, in the size for a screen.
/// @param rowHeight  that it has to fit; a font that is too tall becomes smaller
Font interfaceFont(const Scale& scale, int rowHeight = kAnyHeight);

/// An object that is selected while this lives.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : m_dc(dc), m_before(SelectObject(dc, object)) {}
    ~Selected() {
        SelectObject(m_dc, m_before);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_before;
};

/// A picture that is drawn unseen and shown at once, so that nothing flickers.
class BackBuffer {
public:
    BackBuffer() = default;
    ~BackBuffer();
    BackBuffer(const BackBuffer&) = delete;
    BackBuffer& operator=(const BackBuffer&) = delete;

    /// Draws the part of a window that has to be drawn anew. To be called on WM_PAINT.
    template <typename Draw>
    void paint(HWND window, Draw draw) {
        PAINTSTRUCT paint;
        const HDC screen = BeginPaint(window, &paint);
        if (fit(screen, clientSize(window))) {
            const RECT& part = paint.rcPaint;
            const HRGN region = CreateRectRgnIndirect(&part);
            SelectClipRgn(m_dc, region);
            DeleteObject(region);
            draw(m_dc);
            BitBlt(screen, part.left, part.top, part.right - part.left, part.bottom - part.top,
                   m_dc, part.left, part.top, SRCCOPY);
        }
        EndPaint(window, &paint);
    }

private:
    bool fit(HDC screen, Size size);
    void drop();

    HDC m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;
    Size m_size;
};

/// A context for measuring texts without drawing.
class MeasuringContext {
public:
    MeasuringContext() : m_dc(CreateCompatibleDC(nullptr)) {}
    ~MeasuringContext() {
        DeleteDC(m_dc);
    }
    MeasuringContext(const MeasuringContext&) = delete;
    MeasuringContext& operator=(const MeasuringContext&) = delete;
    HDC handle() const {
        return m_dc;
    }

private:
    HDC m_dc;
};

/// Of a text in the selected font.
Size textSize(HDC dc, std::wstring_view text);

void fill(HDC dc, const Box& box, COLORREF colour);

enum class Align { Left, Centre, Right };

/// A text in one row, in the middle of a box's height. What does not fit ends in an ellipsis.
void drawText(HDC dc, const Box& box, std::wstring_view text, COLORREF colour,
              Align align = Align::Left);

} // namespace desktop
