// UTF-8: telling whole characters from broken ones, and their code points.
#include "shared/utf8.h"

#include <algorithm>

namespace host {

namespace {

constexpr unsigned kContinuationMask = 0xC0;
constexpr unsigned kContinuationMark = 0x80;
constexpr unsigned kPayloadMask = 0x3F;
constexpr int kPayloadBits = 6;
constexpr std::size_t kLongest = 4;

unsigned byteAt(std::string_view text, std::size_t position) {
    return static_cast<unsigned char>(text[position]);
}

bool isContinuation(unsigned byte) {
    return (byte & kContinuationMask) == kContinuationMark;
}

/// Bytes that a first byte announces, 0 for one that begins nothing.
std::size_t announcedLength(unsigned first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

/// Overlong forms, surrogates and code points past the last one show in the second byte.
bool secondByteFits(unsigned first, unsigned second) {
    switch (first) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second <= 0x9F;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second <= 0x8F;
    default:
        return true;
    }
}

} // namespace

std::size_t utf8CharacterLength(std::string_view text, std::size_t position) {
    if (position >= text.size()) {
        return 0;
    }
    const unsigned first = byteAt(text, position);
    const std::size_t length = announcedLength(first);
    if (length == 0 || length > text.size() - position) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(byteAt(text, position + i))) {
            return 0;
        }
    }
    return length == 1 || secondByteFits(first, byteAt(text, position + 1)) ? length : 0;
}

char32_t utf8CodePoint(std::string_view character) {
    if (character.empty()) {
        return 0;
    }
    const unsigned first = byteAt(character, 0);
    if (character.size() == 1) {
        return first;
    }
    const unsigned firstPayload =
        (1u << (kPayloadBits + 1 - static_cast<int>(character.size()))) - 1;
    char32_t codePoint = first & firstPayload;
    for (std::size_t i = 1; i < character.size(); ++i) {
        codePoint = codePoint << kPayloadBits | (byteAt(character, i) & kPayloadMask);
    }
    return codePoint;
}

bool isUtf8(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = utf8CharacterLength(text, position);
        if (length == 0) {
            return false;
        }
        position += length;
    }
    return true;
}

std::string_view withoutBrokenTail(std::string_view text) {
    std::size_t start = text.size();
    const std::size_t lowest = text.size() - std::min(text.size(), kLongest - 1);
    while (start > lowest) {
        --start;
        if (isContinuation(byteAt(text, start))) {
            continue;
        }
        const bool cutOff = announcedLength(byteAt(text, start)) > text.size() - start;
        return cutOff ? text.substr(0, start) : text;
    }
    return text;
}

bool isControl(char32_t codePoint) {
    const bool controlCode = codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
    const bool separator = codePoint == 0x2028 || codePoint == 0x2029;
    const bool direction = codePoint == 0x200E || codePoint == 0x200F ||
                           (codePoint >= 0x202A && codePoint <= 0x202E) ||
                           (codePoint >= 0x2066 && codePoint <= 0x2069);
    return controlCode || separator || direction;
}

std::string withoutControls(std::string_view text) {
    std::string shown;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = std::max<std::size_t>(utf8CharacterLength(text, position), 1);
        const std::string_view character = text.substr(position, length);
        if (!isControl(utf8CodePoint(character))) {
            shown += character;
        }
        position += length;
    }
    return shown;
}

} // namespace host
