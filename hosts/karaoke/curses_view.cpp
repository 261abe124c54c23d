// The view that fills a terminal, through ncurses.
#define NCURSES_WIDECHAR 1
#include "karaoke/curses_view.h"

#include <curses.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "karaoke/output_error.h"
#include "karaoke/screen_layout.h"
#include "karaoke/terminal_mode.h"

namespace karaoke {

namespace {

constexpr int kEscapeDelay = 25; ///< milliseconds
constexpr short kTerminalsOwn = -1;
constexpr std::string_view kGiveBack = "\x1b[0m\x1b[?1049l\x1b[?1l\x1b>\x1b[?7h\x1b[?25h";

/// How a style looks. Without colours the attributes alone have to do.
struct Look {
    Style style;
    short colour;
    attr_t attributes;
};

constexpr Look kLooks[] = {
    {Style::Plain, kTerminalsOwn, A_NORMAL}, {Style::Title, kTerminalsOwn, A_BOLD},
    {Style::Dim, kTerminalsOwn, A_DIM},      {Style::Sung, COLOR_YELLOW, A_BOLD},
    {Style::Coming, kTerminalsOwn, A_BOLD},  {Style::Chord, COLOR_CYAN, A_NORMAL},
    {Style::ChordNow, COLOR_CYAN, A_BOLD},   {Style::CountIn, COLOR_YELLOW, A_BOLD},
    {Style::Played, COLOR_YELLOW, A_NORMAL}, {Style::Place, COLOR_YELLOW, A_BOLD},
    {Style::Loop, COLOR_MAGENTA, A_BOLD},    {Style::Level, COLOR_GREEN, A_NORMAL},
    {Style::Muted, COLOR_RED, A_BOLD},       {Style::Solo, COLOR_GREEN, A_BOLD},
    {Style::Chosen, COLOR_CYAN, A_BOLD},     {Style::Keys, kTerminalsOwn, A_DIM},
    {Style::Notice, COLOR_YELLOW, A_NORMAL},
};
static_assert(std::size(kLooks) == static_cast<std::size_t>(Style::Count));

constexpr short pairOf(std::size_t look) {
    return static_cast<short>(look + 1);
}

bool wantsColours() {
    const char* const refusal = std::getenv("NO_COLOR");
    return has_colors() && (refusal == nullptr || *refusal == '\0');
}

/// Terminals that send their arrows as they do without an application.
void defineArrows() {
    constexpr struct {
        const char* sequence;
        int code;
    } kArrows[] = {{"\x1b[A", KEY_UP},
                   {"\x1b[B", KEY_DOWN},
                   {"\x1b[C", KEY_RIGHT},
                   {"\x1b[D", KEY_LEFT},
                   {"\x1b[H", KEY_HOME}};
    for (const auto& arrow : kArrows) {
        if (key_defined(arrow.sequence) == 0) {
            define_key(arrow.sequence, arrow.code);
        }
    }
}

void prepareColours() {
    start_color();
    use_default_colors();
    for (std::size_t look = 0; look < std::size(kLooks); ++look) {
        init_pair(pairOf(look), kLooks[look].colour, kTerminalsOwn);
    }
}

/// Sung words must differ from those to come without colours too.
void setStyle(Style style, bool colours) {
    const auto look = static_cast<std::size_t>(style);
    attr_t attributes = kLooks[look].attributes;
    if (!colours && style == Style::Sung) {
        attributes |= A_UNDERLINE;
    }
    attr_set(attributes, colours ? pairOf(look) : 0, nullptr);
}

Key keyOf(wint_t code, bool named) {
    if (!named) {
        return static_cast<Key>(code);
    }
    switch (code) {
    case KEY_LEFT:
        return kLeftKey;
    case KEY_RIGHT:
        return kRightKey;
    case KEY_UP:
        return kUpKey;
    case KEY_DOWN:
        return kDownKey;
    case KEY_HOME:
        return kHomeKey;
    case KEY_PPAGE:
        return kPageUpKey;
    case KEY_NPAGE:
        return kPageDownKey;
    case KEY_BTAB:
        return kBackTabKey;
    default:
        return kOtherKey;
    }
}

} // namespace

CursesView::~CursesView() {
    close();
}

void CursesView::open() {
    guardTerminal(kGiveBack);
    set_escdelay(kEscapeDelay);
    if (newterm(nullptr, stdout, stdin) == nullptr) {
        releaseTerminal();
        throw host::HostError("this terminal cannot be drawn on; --plain keeps to a few rows");
    }
    m_open = true;
    cbreak();
    noecho();
    nonl();
    curs_set(0);
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    defineArrows();
    if (wantsColours()) {
        prepareColours();
    }
}

void CursesView::begin(const Desk& desk) {
    m_desk = &desk;
    m_words.emplace(desk.controls);
    if (!m_open) {
        open();
    }
    update();
}

void CursesView::update() {
    int rows = 0;
    int columns = 0;
    getmaxyx(stdscr, rows, columns);
    m_words->update(wordColumns(columns));
    draw(composeScreen(*m_desk, *m_words, columns, rows));
}

void CursesView::draw(const Canvas& canvas) const {
    const bool colours = wantsColours();
    erase();
    for (int row = 0; row < canvas.rows(); ++row) {
        int column = 0;
        for (const Canvas::Cell& cell : canvas.row(row)) {
            if (cell.text != " " && !cell.text.empty()) {
                setStyle(cell.style, colours);
                mvaddstr(row, column, cell.text.c_str());
            } else if (cell.text == " " && cell.style == Style::Sung && !colours) {
                setStyle(cell.style, colours);
                mvaddch(row, column, ' ');
            }
            ++column;
        }
    }
    if (refresh() == ERR) {
        throw OutputError();
    }
}

/// Drawing the next song takes this one's place.
void CursesView::finish(bool /*toItsEnd*/) {}

Key CursesView::key() {
    wint_t code = 0;
    const int kind = get_wch(&code);
    if (kind == ERR || (kind == KEY_CODE_YES && code == KEY_RESIZE)) {
        return kNoKey;
    }
    return keyOf(code, kind == KEY_CODE_YES);
}

void CursesView::report(const std::string& message) {
    if (m_open) {
        m_reports.push_back(message);
    } else {
        SongView::report(message);
    }
}

void CursesView::close() {
    if (!m_open) {
        return;
    }
    m_open = false;
    endwin();
    releaseTerminal();
    for (const std::string& message : m_reports) {
        SongView::report(message);
    }
    m_reports.clear();
}

void CursesView::suspend() {
    def_prog_mode();
    endwin();
}

void CursesView::resume() {
    reset_prog_mode();
    redrawwin(stdscr);
    update();
}

/// The main thread may be inside ncurses.
void CursesView::abandon() {
    restoreTerminal();
}

} // namespace karaoke
