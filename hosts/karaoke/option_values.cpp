// The values of options: from text to checked numbers.
#include "karaoke/option_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string_view>

#include "corvmo32.h"
#include "shared/song_events.h"
#include "shared/text_decoder.h"

namespace karaoke {

namespace {

constexpr int kMaxData = 127; ///< largest data byte of MIDI

std::string shown(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

[[noreturn]] void reject(const std::string& option, const std::string& text,
                         const std::string& wanted) {
    throw UsageError(option + ": '" + text + "' is not " + wanted);
}

/// "+5" is a number to people.
std::string_view withoutPlus(std::string_view text) {
    const bool plus = text.size() > 1 && text.front() == '+' && text[1] != '-';
    return plus ? text.substr(1) : text;
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
    const std::string_view digits = withoutPlus(text);
    Number number{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return number;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

int parseChannel(const std::string& option, const std::string& text) {
    const std::optional<int> channel = numberIn<int>(text);
    if (!channel || *channel < 1 || *channel > host::kChannels) {
        reject(option, text, "a channel from 1 to 16");
    }
    return *channel - 1;
}

std::vector<std::string> fields(const std::string& option, const std::string& text,
                                std::size_t fewest, std::size_t most, const char* form) {
    std::vector<std::string> parts = split(text, ':');
    if (parts.size() < fewest || parts.size() > most) {
        reject(option, text, std::string("of the form ") + form);
    }
    return parts;
}

} // namespace

int parseWhole(const std::string& option, const std::string& text, int lowest, int highest) {
    const std::optional<int> number = numberIn<int>(text);
    if (!number || *number < lowest || *number > highest) {
        reject(option, text,
               "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return *number;
}

double parseNumber(const std::string& option, const std::string& text, double lowest,
                   double highest) {
    const std::optional<double> number = numberIn<double>(text);
    if (!number || std::isnan(*number) || *number < lowest || *number > highest) {
        reject(option, text, "a number from " + shown(lowest) + " to " + shown(highest));
    }
    return *number;
}

std::vector<int> parseChannels(const std::string& option, const std::string& text) {
    std::vector<int> channels;
    for (const std::string& part : split(text, ',')) {
        channels.push_back(parseChannel(option, part));
    }
    std::sort(channels.begin(), channels.end());
    channels.erase(std::unique(channels.begin(), channels.end()), channels.end());
    return channels;
}

VolumeOffset parseVolume(const std::string& text) {
    const std::string option = "--volume";
    const std::vector<std::string> parts = fields(option, text, 2, 2, "CHANNEL:OFFSET");
    return {parseChannel(option, parts[0]), parseWhole(option, parts[1], -kMaxData, kMaxData)};
}

PatchChoice parsePatch(const std::string& text) {
    const std::string option = "--patch";
    const std::vector<std::string> parts =
        fields(option, text, 2, 4, "CHANNEL:PROGRAM[:MSB[:LSB]]");
    const auto bank = [&](std::size_t index) {
        return parts.size() > index ? parseWhole(option, parts[index], 0, kMaxData) : 0;
    };
    return {parseChannel(option, parts[0]), parseWhole(option, parts[1], 1, kMaxData + 1) - 1,
            bank(2), bank(3)};
}

DrumReplacement parseDrums(const std::string& text) {
    const std::string option = "--drums";
    const std::vector<std::string> parts = fields(option, text, 2, 2, "FROM:TO");
    return {parseWhole(option, parts[0], 0, kMaxData), parseWhole(option, parts[1], 0, kMaxData)};
}

std::optional<std::uint16_t> parseReset(const std::string& text) {
    if (text == "none") {
        return std::nullopt;
    }
    constexpr std::array<std::string_view, 3> kModes = {"gm", "gs", "xg"}; // by MMMODE_...
    const auto mode = std::find(kModes.begin(), kModes.end(), text);
    if (mode == kModes.end()) {
        reject("--reset", text, "one of gm, gs, xg, none");
    }
    return static_cast<std::uint16_t>(mode - kModes.begin());
}

std::string parseAudioDriver(const std::string& text) {
    constexpr std::array<std::string_view, 8> kDrivers = {
        "alsa", "jack", "none", "oss", "pipewire", "portaudio", "pulseaudio", "sdl2"};
    if (std::find(kDrivers.begin(), kDrivers.end(), text) == kDrivers.end()) {
        reject("--audio", text,
               "one of alsa, jack, none, oss, pipewire, portaudio, pulseaudio, sdl2");
    }
    return text;
}

std::string parseSoundFont(const std::string& path) {
    constexpr std::size_t kTypeOffset = 8;
    std::ifstream file(path, std::ios::binary);
    std::array<char, 12> head{};
    if (!file || !file.read(head.data(), head.size())) {
        throw UsageError("--soundfont: '" + path + "' cannot be read");
    }
    const std::string_view bytes(head.data(), head.size());
    if (!bytes.starts_with("RIFF") || !bytes.substr(kTypeOffset).starts_with("sfbk")) {
        reject("--soundfont", path, "a sound font");
    }
    return path;
}

std::string parseEncoding(const std::string& name) {
    if (!host::TextDecoder::knows(name)) {
        reject("--encoding", name, "an encoding that this system knows (see 'iconv -l')");
    }
    return name;
}

} // namespace karaoke
