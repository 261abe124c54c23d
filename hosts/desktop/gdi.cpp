// Fonts, the picture in memory, texts.
#include "desktop/gdi.h"

namespace desktop {

namespace {

constexpr int kInterfacePoints = 9;
constexpr int kPointsPerInch = 72;
constexpr int kLettersOfRow = 4; ///< of five parts: the rest is room for accents and tails
constexpr int kWholeRow = 5;

} // namespace

Size clientSize(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

Font::Font(const wchar_t* face, int height, bool bold) {
    // A negative height is that of the letters, without the room for accents above.
    m_font = CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                         DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                         CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, face);
}

Font::~Font() {
    if (m_font != nullptr) {
        DeleteObject(m_font);
    }
}

Font interfaceFont(const Scale& scale, int rowHeight) {
    LOGFONTW font{};
    // The font of icons is asked for by its own record, which every Windows since 95 fills.
    SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof font, &font, 0);
    const int usual = MulDiv(kInterfacePoints, scale.dpi(), kPointsPerInch);
    const int fitting = rowHeight * kLettersOfRow / kWholeRow;
    return {font.lfFaceName, std::clamp(fitting, 1, usual), false};
}

BackBuffer::~BackBuffer() {
    drop();
}

void BackBuffer::drop() {
    if (m_dc != nullptr) {
        SelectObject(m_dc, m_before);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
        m_dc = nullptr;
    }
}

bool BackBuffer::fit(HDC screen, Size size) {
    if (m_dc != nullptr && size == m_size) {
        return true;
    }
    drop();
    m_size = size;
    m_bitmap = CreateCompatibleBitmap(screen, std::max(size.width, 1), std::max(size.height, 1));
    if (m_bitmap == nullptr) {
        return false;
    }
    m_dc = CreateCompatibleDC(screen);
    m_before = SelectObject(m_dc, m_bitmap);
    SetBkMode(m_dc, TRANSPARENT);
    return true;
}

Size textSize(HDC dc, std::wstring_view text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return {size.cx, size.cy};
}

void fill(HDC dc, const Box& box, COLORREF colour) {
    const RECT area = toRect(box);
    // Opaque empty text fills without a brush to be made and dropped.
    SetBkColor(dc, colour);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, L"", 0, nullptr);
    SetBkMode(dc, TRANSPARENT);
}

void drawText(HDC dc, const Box& box, std::wstring_view text, COLORREF colour, Align align) {
    UINT format = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
    format |= align == Align::Left ? DT_LEFT : align == Align::Right ? DT_RIGHT : DT_CENTER;
    SetTextColor(dc, colour);
    RECT area = toRect(box);
    DrawTextW(dc, text.data(), static_cast<int>(text.size()), &area, format);
}

} // namespace desktop
