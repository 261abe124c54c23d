// The values of options: from text to checked numbers. All functions throw UsageError with one clear line.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "karaoke/play_options.h"

namespace karaoke {

/// The command line cannot be obeyed.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A whole number within limits. The option's name is for the message.
int parseWhole(const std::string& option, const std::string& text, int lowest, int highest);

/// A number with or without fraction, within limits.
double parseNumber(const std::string& option, const std::string& text, double lowest,
                   double highest);

/// "3" or "1,2,10": channels 1 to 16, answered as 0 to 15, each once, lowest first.
std::vector<int> parseChannels(const std::string& option, const std::string& text);

/// "CH:OFFSET"
VolumeOffset parseVolume(const std::string& text);

/// "CH:PROGRAM", "CH:PROGRAM:MSB" or "CH:PROGRAM:MSB:LSB"; programs count from 1, banks from 0.
PatchChoice parsePatch(const std::string& text);

/// "FROM:TO", notes 0 to 127
DrumReplacement parseDrums(const std::string& text);

/// "gm", "gs", "xg", or "none" for nothing.
std::optional<std::uint16_t> parseReset(const std::string& text);

/// A driver of the software synthesizer, by name.
std::string parseAudioDriver(const std::string& text);

/// A file that can be read and is a sound font.
std::string parseSoundFont(const std::string& path);

/// A name of an encoding that the system knows.
std::string parseEncoding(const std::string& name);

} // namespace karaoke
