// The view that fills a terminal, through ncurses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "karaoke/canvas.h"
#include "karaoke/shown_words.h"
#include "karaoke/song_view.h"

namespace karaoke {

class CursesView final : public SongView {
public:
    CursesView() = default;
    ~CursesView() override;

    void begin(const Desk& desk) override;
    void update() override;
    void finish(bool toItsEnd) override;
    Key key() override;
    void report(const std::string& message) override;
    void close() override;
    void suspend() override;
    void resume() override;
    void abandon() override;

private:
    void open();
    void draw(const Canvas& canvas) const;

    bool m_open = false;
    const Desk* m_desk = nullptr;
    std::optional<ShownWords> m_words;
    std::vector<std::string> m_reports; ///< told when the screen is given back
};

} // namespace karaoke
