// Tells chord names from other texts by their grammar.
#include "shared/chord_names.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

using namespace std::string_view_literals;

// A longer word stands before its beginnings.
constexpr std::array kQualities = {
    "major"sv, "minor"sv, "maj"sv, "min"sv, "dim"sv, "aug"sv, "sus"sv, "add"sv, "dom"sv,
    "omit"sv,  "Maj"sv,   "Min"sv, "alt"sv, "mi"sv,  "ma"sv,  "MA"sv,  "no"sv,  "m"sv,
    "M"sv,     "+"sv,     "-"sv,   "o"sv,   "#"sv,   "b"sv,   "("sv,   ")"sv,   ","sv,
    " "sv,     "*"sv,     "♯"sv,   "♭"sv,   "°"sv,   "ø"sv,   "Δ"sv,   "º"sv,
};

bool take(std::string_view& text, std::string_view word) {
    if (!text.starts_with(word)) {
        return false;
    }
    text.remove_prefix(word.size());
    return true;
}

bool takeRoot(std::string_view& text) {
    if (text.empty() || text.front() < 'A' || text.front() > 'H') {
        return false;
    }
    text.remove_prefix(1);
    const bool altered = take(text, "#") || take(text, "b") || take(text, "♯") || take(text, "♭");
    static_cast<void>(altered);
    return true;
}

bool takeDigit(std::string_view& text) {
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

bool takeQuality(std::string_view& text) {
    return takeDigit(text) ||
           std::any_of(kQualities.begin(), kQualities.end(),
                       [&text](std::string_view word) { return take(text, word); });
}

/// After a slash stands a bass note or, as in 6/9, a figure.
bool takeBass(std::string_view& text) {
    std::string_view rest = text;
    if (!take(rest, "/") || !(takeRoot(rest) || takeDigit(rest))) {
        return false;
    }
    text = rest;
    return true;
}

} // namespace

bool isChordName(std::string_view text) {
    if (text == "N.C." || text == "NC" || text == "N.C") {
        return true;
    }
    if (!takeRoot(text)) {
        return false;
    }
    while (takeQuality(text) || takeBass(text)) {
    }
    return text.empty();
}

} // namespace host
