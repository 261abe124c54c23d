// Keys from a terminal's bytes.
#include "karaoke/key_input.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace karaoke {

namespace {

constexpr char kEscape = '\x1b';

constexpr struct {
    std::string_view sequence; ///< behind the escape character
    Key key;
} kSequences[] = {
    {"[A", kUpKey},      {"[B", kDownKey},      {"[C", kRightKey}, {"[D", kLeftKey},
    {"OA", kUpKey},      {"OB", kDownKey},      {"OC", kRightKey}, {"OD", kLeftKey},
    {"[H", kHomeKey},    {"OH", kHomeKey},      {"[1~", kHomeKey}, {"[Z", kBackTabKey},
    {"[5~", kPageUpKey}, {"[6~", kPageDownKey},
};

/// Bytes of a sequence that is not known: up to its last character.
std::size_t lengthOfUnknown(std::string_view bytes) {
    std::size_t length = 2;
    while (length < bytes.size() && (bytes[length - 1] < '@' || length == 2)) {
        ++length;
    }
    return length;
}

} // namespace

void KeyInput::fill() {
    std::array<char, 64> bytes;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, 0) == 1 && (input.revents & POLLIN) != 0) {
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        m_bytes.append(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

Key KeyInput::next() {
    if (m_bytes.empty()) {
        fill();
    }
    return m_bytes.empty() ? kNoKey : decode();
}

Key KeyInput::decode() {
    const std::string_view bytes = m_bytes;
    Key key = static_cast<unsigned char>(bytes.front());
    std::size_t length = 1;
    if (bytes.front() == kEscape && bytes.size() > 1) {
        key = kOtherKey;
        length = lengthOfUnknown(bytes);
        for (const auto& known : kSequences) {
            if (bytes.substr(1).starts_with(known.sequence)) {
                key = known.key;
                length = 1 + known.sequence.size();
            }
        }
    }
    m_bytes.erase(0, length);
    return key;
}

} // namespace karaoke
