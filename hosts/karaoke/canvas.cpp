// A screenful of characters with styles.
#include "karaoke/canvas.h"

#include <algorithm>

#include "karaoke/text_width.h"
#include "shared/utf8.h"

namespace karaoke {

Canvas::Canvas(int columns, int rows)
    : m_columns(columns), m_rows(rows),
      m_cells(static_cast<std::size_t>(rows),
              std::vector<Cell>(static_cast<std::size_t>(columns))) {}

int Canvas::put(int row, int column, std::string_view text, Style style) {
    while (!text.empty()) {
        const std::size_t length = std::max<std::size_t>(host::utf8CharacterLength(text, 0), 1);
        const std::string_view character = text.substr(0, length);
        const int width = columnsOf(character);
        const bool inside = row >= 0 && row < m_rows && column >= (width == 0 ? 1 : 0) &&
                            column + width <= m_columns;
        if (inside) {
            std::vector<Cell>& cells = m_cells[static_cast<std::size_t>(row)];
            if (width == 0) {
                cells[static_cast<std::size_t>(column) - 1].text += character;
            } else {
                cells[static_cast<std::size_t>(column)] = {std::string(character), style};
            }
            for (int second = column + 1; second < column + width; ++second) {
                cells[static_cast<std::size_t>(second)] = {"", style};
            }
        }
        column += width;
        text.remove_prefix(length);
    }
    return column;
}

int Canvas::putFitted(int row, int column, std::string_view text, int width, Style style) {
    return put(row, column, fitted(text, width), style);
}

} // namespace karaoke
