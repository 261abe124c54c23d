// The controls of the transport.
#include "desktop/transport_strip.h"

#include <commctrl.h>

#include <utility>

#include "desktop/resource.h"
#include "desktop/speed.h"

namespace desktop {

namespace {

constexpr int kButtonPadding = 9;
constexpr int kLabelGap = 4;
constexpr int kSpinWidth = 18;
constexpr int kNumberPadding = 6;
constexpr DWORD kSwitchStyle = BS_AUTOCHECKBOX | BS_PUSHLIKE;

const std::vector<std::wstring> kPlayTexts = {L"&Play", L"&Pause"};

/// Without the mark of the underlined letter.
std::wstring plain(std::wstring text) {
    std::erase(text, L'&');
    return text;
}

void setText(HWND control, const std::wstring& text) {
    wchar_t before[64] = L"";
    GetWindowTextW(control, before, 64);
    if (text != before) {
        SetWindowTextW(control, text.c_str());
    }
}

} // namespace

TransportStrip::TransportStrip(HWND parent) : m_parent(parent) {
    addButton(ID_PLAY, kPlayTexts, false, BS_PUSHBUTTON);
    addButton(ID_STOP, {L"&Stop"}, false, BS_PUSHBUTTON);
    addButton(ID_REWIND, {L"&Rewind"}, false, BS_PUSHBUTTON);
    addButton(ID_PREVIOUS, {L"Pre&vious"}, true, BS_PUSHBUTTON);
    addButton(ID_NEXT, {L"&Next"}, false, BS_PUSHBUTTON);
    addButton(ID_LOOP_BEGIN, {L"Loop from &A"}, true, BS_PUSHBUTTON);
    addButton(ID_LOOP_END, {L"to &B"}, false, BS_PUSHBUTTON);
    addButton(ID_LOOP_CLEAR, {L"No &loop"}, false, BS_PUSHBUTTON);
    addNumber({ID_TEMPO, ID_TEMPO_LABEL, ID_TEMPO_SPIN, L"&Tempo %", L"0000", kSlowestSpeed,
               kFastestSpeed, true});
    addNumber({ID_KEY, ID_KEY_LABEL, ID_KEY_SPIN, L"&Key", L"-000", -host::kMostTranspose,
               host::kMostTranspose, false});
    addButton(ID_FADE, {L"Fade &out"}, true, BS_PUSHBUTTON);
    addButton(ID_METRONOME, {L"&Metronome"}, false, kSwitchStyle);
    addButton(ID_PANIC, {L"Pan&ic"}, true, BS_PUSHBUTTON);
}

void TransportStrip::addButton(int id, std::vector<std::wstring> texts, bool beginsGroup,
                               DWORD style) {
    const HWND button = CreateWindowExW(
        0, L"BUTTON", texts.front().c_str(), WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 0, 0,
        m_parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    m_items.push_back({button, std::move(texts), beginsGroup});
}

void TransportStrip::addNumber(const Number& number) {
    const auto make = [&](DWORD extended, const wchar_t* kind, const wchar_t* text, DWORD style,
                          int id) {
        return CreateWindowExW(extended, kind, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                               m_parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr,
                               nullptr);
    };
    const HWND label = make(0, L"STATIC", number.label, SS_CENTERIMAGE, number.labelId);
    const HWND edit =
        make(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_TABSTOP | ES_RIGHT | ES_AUTOHSCROLL, number.id);
    const HWND spin = make(0, UPDOWN_CLASSW, L"", UDS_SETBUDDYINT | UDS_ARROWKEYS | UDS_NOTHOUSANDS,
                           number.spinId);
    SendMessageW(spin, UDM_SETBUDDY, reinterpret_cast<WPARAM>(edit), 0);
    SendMessageW(spin, UDM_SETRANGE32, static_cast<WPARAM>(number.lowest), number.highest);
    m_items.push_back({edit, {number.label, number.widest}, number.beginsGroup, label, spin});
}

HWND TransportStrip::control(int id) const {
    return GetDlgItem(m_parent, id);
}

void TransportStrip::setFont(HFONT font, const Scale& scale) {
    m_font = font;
    m_scale = scale;
    const MeasuringContext context;
    const Selected selected(context.handle(), font);
    m_numberHeight = textSize(context.handle(), L"0").height + m_scale(kNumberPadding);
    for (const Item& item : m_items) {
        for (const HWND window : {item.control, item.label}) {
            if (window != nullptr) {
                SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
            }
        }
    }
}

int TransportStrip::widthOf(const std::wstring& text) const {
    const MeasuringContext context;
    const Selected selected(context.handle(), m_font);
    return textSize(context.handle(), plain(text)).width;
}

std::vector<StripItem> TransportStrip::items() const {
    std::vector<StripItem> items;
    for (const Item& item : m_items) {
        if (item.spin != nullptr) {
            items.push_back({widthOf(item.texts[0]) + m_scale(kLabelGap) + widthOf(item.texts[1]) +
                                 2 * m_scale(kNumberPadding) + m_scale(kSpinWidth),
                             item.beginsGroup});
            continue;
        }
        int widest = 0;
        for (const std::wstring& text : item.texts) {
            widest = std::max(widest, widthOf(text));
        }
        items.push_back({widest + 2 * m_scale(kButtonPadding), item.beginsGroup});
    }
    return items;
}

void TransportStrip::place(const std::vector<Box>& boxes) {
    const auto put = [](HWND window, const Box& box) {
        MoveWindow(window, box.left, box.top, box.width(), box.height(), TRUE);
        ShowWindow(window, box.empty() ? SW_HIDE : SW_SHOWNA);
    };
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const Item& item = m_items[i];
        const Box& box = boxes[i];
        if (item.spin == nullptr) {
            put(item.control, box);
            continue;
        }
        const int labelEnd =
            box.empty() ? box.left : box.left + widthOf(item.texts[0]) + m_scale(kLabelGap);
        const int spinStart = box.empty() ? box.right : box.right - m_scale(kSpinWidth);
        put(item.label, {box.left, box.top, labelEnd, box.bottom});
        // A field shows its text at the top: as high as the text, in the middle.
        const int margin = std::max((box.height() - m_numberHeight) / 2, 0);
        put(item.control, {labelEnd, box.top + margin, spinStart, box.bottom - margin});
        put(item.spin, {spinStart, box.top + margin, box.right, box.bottom - margin});
    }
}

/// A number that has not changed is left alone: the listener may be typing another one.
void TransportStrip::showNumber(int id, int value) {
    const auto shown = m_numbers.find(id);
    if (shown != m_numbers.end() && shown->second == value) {
        return;
    }
    m_numbers[id] = value;
    BOOL isNumber = FALSE;
    const int there = static_cast<int>(GetDlgItemInt(m_parent, id, &isNumber, TRUE));
    if (isNumber == FALSE || there != value) {
        m_showing = true;
        SetDlgItemInt(m_parent, id, static_cast<UINT>(value), TRUE);
        m_showing = false;
    }
}

void TransportStrip::show(const SessionState& state) {
    const bool hasSong = state.song != nullptr;
    for (const Item& item : m_items) {
        const int id = GetDlgCtrlID(item.control);
        const bool always = id == ID_PANIC || id == ID_PREVIOUS || id == ID_NEXT;
        const BOOL enabled = hasSong || always ? TRUE : FALSE;
        if (IsWindowEnabled(item.control) != enabled) {
            EnableWindow(item.control, enabled);
        }
    }
    setText(control(ID_PLAY), kPlayTexts[state.playing ? 1 : 0]);
    CheckDlgButton(m_parent, ID_METRONOME, state.metronome ? BST_CHECKED : BST_UNCHECKED);
    showNumber(ID_TEMPO, speedOf(state.settings.tempoPercent));
    showNumber(ID_KEY, state.settings.transpose);
}

std::optional<int> TransportStrip::entered(int id, int lowest, int highest) {
    BOOL isNumber = FALSE;
    const int value = static_cast<int>(GetDlgItemInt(m_parent, id, &isNumber, TRUE));
    if (m_showing || isNumber == FALSE || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> TransportStrip::enteredSpeed() {
    return entered(ID_TEMPO, kSlowestSpeed, kFastestSpeed);
}

std::optional<int> TransportStrip::enteredKey() {
    return entered(ID_KEY, -host::kMostTranspose, host::kMostTranspose);
}

} // namespace desktop
