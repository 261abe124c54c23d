// Words as files that other players read.
#include "shared/lyric_files.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "shared/sung_lines.h"

namespace host {

namespace {

constexpr long kMillisecondsPerCentisecond = 10;
constexpr long kSecond = 1000; ///< milliseconds
constexpr long kMinute = 60 * kSecond;
constexpr long kHour = 60 * kMinute;
constexpr long kLeadIn = 1000; ///< milliseconds in which a line can be read before it is sung

/// Everything that is written in centiseconds is a difference of these, so that sums do not drift.
long centiseconds(long milliseconds) {
    return (milliseconds + kMillisecondsPerCentisecond / 2) / kMillisecondsPerCentisecond;
}

std::string formatted(const char* form, long a, long b, long c, long d) {
    char text[80];
    std::snprintf(text, sizeof text, form, a, b, c, d);
    return text;
}

std::string lrcTime(long milliseconds) {
    constexpr long kPerSecond = kSecond / kMillisecondsPerCentisecond;
    constexpr long kPerMinute = kMinute / kMillisecondsPerCentisecond;
    const long time = centiseconds(milliseconds);
    char text[64];
    std::snprintf(text, sizeof text, "%02ld:%02ld.%02ld", time / kPerMinute,
                  time % kPerMinute / kPerSecond, time % kPerSecond);
    return text;
}

std::string assTime(long milliseconds) {
    const long time = centiseconds(milliseconds) * kMillisecondsPerCentisecond;
    return formatted("%ld:%02ld:%02ld.%02ld", time / kHour, time % kHour / kMinute,
                     time % kMinute / kSecond, time % kSecond / kMillisecondsPerCentisecond);
}

std::string srtTime(long time) {
    return formatted("%02ld:%02ld:%02ld,%03ld", time / kHour, time % kHour / kMinute,
                     time % kMinute / kSecond, time % kSecond);
}

/// A value of an LRC tag ends at the first closing bracket.
std::string lrcTagValue(std::string text) {
    std::replace(text.begin(), text.end(), '[', '(');
    std::replace(text.begin(), text.end(), ']', ')');
    return text;
}

std::string assText(const std::string& text) {
    std::string plain;
    for (const char c : withoutMarkup(text, "\\")) {
        plain += c == '{' ? "\\{" : std::string(1, c);
    }
    return plain;
}

/// The arrow stands between two times and nowhere else.
std::string srtText(const std::string& words) {
    std::string text = withoutMarkup(words, "<{");
    for (std::size_t at = text.find("-->"); at != std::string::npos; at = text.find("-->", at)) {
        text.replace(at, 1, withoutMarkup("-", "-"));
    }
    return text;
}

constexpr const char* kAssHead =
    "ScriptType: v4.00+\n"
    "PlayResX: 1280\n"
    "PlayResY: 720\n"
    "WrapStyle: 0\n"
    "ScaledBorderAndShadow: yes\n"
    "\n"
    "[V4+ Styles]\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, "
    "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
    "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
    // Yellow where it was sung, white before; blue, green and red bytes in this order.
    "Style: Karaoke,Sans,56,&H0000D7FF,&H00FFFFFF,&H00000000,&H80000000,"
    "-1,0,0,0,100,100,0,0,1,3,1,2,40,40,60,1\n"
    "\n"
    "[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

std::string assLine(const SungLine& line, long shownFrom) {
    std::string text =
        "Dialogue: 0," + assTime(shownFrom) + "," + assTime(line.end()) + ",Karaoke,,0,0,0,,";
    const auto effect = [](long from, long to) {
        return "{\\k" + std::to_string(centiseconds(to) - centiseconds(from)) + "}";
    };
    if (shownFrom < line.start()) {
        text += effect(shownFrom, line.start());
    }
    for (const SungSyllable& syllable : line.syllables) {
        text += effect(syllable.start, syllable.end) + assText(syllable.text);
    }
    return text + "\n";
}

} // namespace

std::string lrcFile(const Song& song, int offset) {
    const long length = std::lround(song.seconds()) * kSecond;
    std::string file = "[ti:" + lrcTagValue(song.title) +
                       "]\n[length:" + lrcTime(length).substr(0, lrcTime(length).find('.')) + "]\n";
    for (const SungLine& line : sungLines(song, offset)) {
        file += "[" + lrcTime(line.start()) + "]";
        for (const SungSyllable& syllable : line.syllables) {
            file += "<" + lrcTime(syllable.start) + ">" + withoutMarkup(syllable.text, "[<");
        }
        file += "<" + lrcTime(line.end()) + ">\n";
    }
    return file;
}

std::string assFile(const Song& song, int offset) {
    std::string file = "[Script Info]\nTitle: " + song.title + "\n" + kAssHead;
    long free = 0; ///< where the line before is gone
    for (const SungLine& line : sungLines(song, offset)) {
        const long shownFrom = std::clamp(free, std::max(line.start() - kLeadIn, 0L), line.start());
        file += assLine(line, shownFrom);
        free = line.end();
    }
    return file;
}

std::string srtFile(const Song& song, int offset) {
    std::string file;
    int number = 0;
    for (const SungLine& line : sungLines(song, offset)) {
        file += std::to_string(++number) + "\n" + srtTime(line.start()) + " --> " +
                srtTime(line.end()) + "\n" + srtText(line.words()) + "\n\n";
    }
    return file;
}

} // namespace host
