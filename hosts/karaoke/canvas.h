// A screenful of characters with styles, drawn by whoever knows the terminal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace karaoke {

/// What a piece of text is; the terminal decides how that looks.
enum class Style {
    Plain,
    Title,
    Dim,
    Sung,
    Coming,
    Chord,
    ChordNow,
    CountIn,
    Played, ///< of the position bar
    Place,  ///< where the song stands on it
    Loop,
    Level,
    Muted,
    Solo,
    Chosen,
    Keys,
    Notice,
    Count ///< of the styles
};

class Canvas {
public:
    /// One column. The second column of a wide character has no text.
    struct Cell {
        std::string text = " ";
        Style style = Style::Plain;
    };

    Canvas(int columns, int rows);

    int columns() const {
        return m_columns;
    }
    int rows() const {
        return m_rows;
    }
    const std::vector<Cell>& row(int row) const {
        return m_cells[static_cast<std::size_t>(row)];
    }

    /// Writes UTF-8 text; what lies outside is left out.
    /// @return the column behind the text
    int put(int row, int column, std::string_view text, Style style);

    /// The same, with an ellipsis where it exceeds a width.
    int putFitted(int row, int column, std::string_view text, int width, Style style);

private:
    int m_columns;
    int m_rows;
    std::vector<std::vector<Cell>> m_cells;
};

} // namespace karaoke
