// Readable forms of what the machine recorded.
#include "tests/support/machine.h"

#include <cstdio>
#include <ostream>

std::string toText(const Sent& sent) {
    std::string text = std::to_string(sent.output) + ":";
    for (const std::uint8_t byte : sent.bytes) {
        char hex[4];
        std::snprintf(hex, sizeof hex, " %02X", byte);
        text += hex;
    }
    return text;
}

std::vector<std::string> toText(const std::vector<Sent>& log) {
    std::vector<std::string> lines;
    for (const Sent& sent : log) {
        lines.push_back(toText(sent));
    }
    return lines;
}

std::ostream& operator<<(std::ostream& stream, const Posted& posted) {
    char text[80];
    std::snprintf(text, sizeof text, "0x%X(%lld, %lld)", posted.message,
                  static_cast<long long>(posted.wParam), static_cast<long long>(posted.lParam));
    return stream << text;
}
