// The init text: lines of hexadecimal digit pairs, each one system-exclusive message.
#include <array>
#include <cstdlib>

#include "engine/globals.h"
#include "engine/output.h"

namespace {

/// The digits of one line, spaces left out.
struct Line {
    std::array<char, kInitTextSize> digits{};
    int count = 0;
};

bool endsLine(char character) noexcept {
    return character == '\r' || character == '\n' || character == '\0';
}

const char* readLine(const char* text, Line& line) noexcept {
    for (; !endsLine(*text); ++text) {
        if (*text != ' ') {
            line.digits[static_cast<std::size_t>(line.count++)] = *text;
        }
    }
    return text;
}

const char* skipLineEnd(const char* text) noexcept {
    if (*text == '\r') {
        ++text;
    }
    if (*text == '\n') {
        ++text;
    }
    return text;
}

void sendLine(MIDIOUT& player, const Line& line) noexcept {
    std::array<std::uint8_t, kInitTextSize / 2> message{};
    const int bytes = line.count / 2;
    for (int i = 0; i < bytes; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const char pair[] = {line.digits[2 * at], line.digits[2 * at + 1], '\0'};
        message[at] = static_cast<std::uint8_t>(std::strtol(pair, nullptr, 16));
    }
    sendLongMessage(player, message.data(), bytes);
}

} // namespace

void SendInitSysEx(MIDIOUT& player) noexcept {
    for (const char* text = g_initSysExText; *text != '\0';) {
        Line line;
        text = skipLineEnd(readLine(text, line));
        sendLine(player, line);
    }
}
