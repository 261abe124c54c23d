"""A small terminal: enough of one to see what the karaoke player's escape sequences leave on the screen."""

import re
import unicodedata

SEQUENCE = re.compile(r"\x1b\[(\??)([0-9;]*)([A-Za-z])")


def width(character):
    if unicodedata.combining(character):
        return 0
    return 2 if unicodedata.east_asian_width(character) in "WF" else 1


class Screen:
    """Rows of cells. A cell is a character and its style; the second half of a wide character is ''."""

    def __init__(self, columns, rows):
        self.columns = columns
        self.rows = rows
        self.cells = [self._blank() for _ in range(rows)]
        self.row = self.column = 0
        self.style = ""
        self.cursor_shown = True
        self.wraps = True
        self.unknown = []
        self.lost = 0  # characters that fell off the right edge

    def _blank(self):
        return [(" ", "")] * self.columns

    def feed(self, text):
        position = 0
        while position < len(text):
            match = SEQUENCE.match(text, position)
            if match:
                self._sequence(*match.groups())
                position = match.end()
            else:
                self._character(text[position])
                position += 1

    def _character(self, character):
        if character == "\r":
            self.column = 0
        elif character == "\n":
            if self.row + 1 == self.rows:
                self.cells = self.cells[1:] + [self._blank()]
            else:
                self.row += 1
        elif character < " ":
            self.unknown.append(character)
        else:
            self._put(character, width(character))

    def _put(self, character, columns):
        if self.column + columns > self.columns:
            self.lost += 1
            return
        if columns == 0:
            return
        self.cells[self.row][self.column] = (character, self.style)
        for second in range(self.column + 1, self.column + columns):
            self.cells[self.row][second] = ("", self.style)
        self.column += columns

    def _sequence(self, private, numbers, kind):
        if private:
            if numbers == "25":
                self.cursor_shown = kind == "h"
            elif numbers == "7":
                self.wraps = kind == "h"
            else:
                self.unknown.append(private + numbers + kind)
        elif kind == "A":
            self.row = max(0, self.row - int(numbers or 1))
        elif kind == "K" and not numbers:
            self.cells[self.row][self.column:] = self._blank()[self.column:]
        elif kind == "J" and not numbers:
            self.cells[self.row][self.column:] = self._blank()[self.column:]
            self.cells[self.row + 1:] = [self._blank() for _ in range(self.rows - self.row - 1)]
        elif kind == "m":
            self.style = "" if numbers == "0" else numbers
        else:
            self.unknown.append(numbers + kind)

    def line(self, row):
        return "".join(character for character, _ in self.cells[row]).rstrip()

    def lines(self):
        return [self.line(row) for row in range(self.rows)]

    def styled(self, row, style):
        """The characters of a row that have a style."""
        return "".join(character for character, of in self.cells[row] if of == style)
