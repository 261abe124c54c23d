// Options that several commands take.
#include "karaoke/setting_options.h"

#include "karaoke/declared_options.h"
#include "karaoke/option_values.h"

namespace karaoke {

namespace {

void addChannelSettings(CLI::App& command, host::SongSettings& settings) {
    const auto channelOf = [&settings](int channel) -> host::ChannelSettings& {
        return settings.channels.at(static_cast<std::size_t>(channel));
    };
    addValue(command, "mute", "CH,...", "Do not play the notes of these channels",
             [channelOf](const std::string& text) {
                 for (const int channel : parseChannels("--mute", text)) {
                     channelOf(channel).muted = true;
                 }
             });
    addValue(command, "solo", "CH,...", "Play the notes of these channels only",
             [channelOf](const std::string& text) {
                 for (const int channel : parseChannels("--solo", text)) {
                     channelOf(channel).solo = true;
                 }
             });
    addRepeatable(command, "volume", "CH:OFFSET",
                  "Make a channel louder or softer, -127 to 127; may be repeated",
                  [channelOf](const std::string& text) {
                      const VolumeOffset volume = parseVolume(text);
                      channelOf(volume.channel).volume = volume.offset;
                  });
    addRepeatable(command, "patch", "CH:PROGRAM[:MSB[:LSB]]",
                  "Play a channel with another instrument, bank 0 to 127 each; may be repeated",
                  [channelOf](const std::string& text) {
                      const PatchChoice patch = parsePatch(text);
                      host::ChannelSettings& channel = channelOf(patch.channel);
                      channel.program = patch.program;
                      channel.bankMsb = patch.bankMsb;
                      channel.bankLsb = patch.bankLsb;
                  });
}

} // namespace

void addEncoding(CLI::App& command, std::string& encoding) {
    addValue(command, "encoding", "NAME",
             "Encoding of the song's texts (a name that 'iconv -l' lists); guessed without it",
             [&encoding](const std::string& text) { encoding = parseEncoding(text); });
}

void addTempo(CLI::App& command, float& percent) {
    addValue(command, "tempo", "PERCENT", "Faster (up to 90) or slower (down to -300)",
             [&percent](const std::string& text) {
                 percent = static_cast<float>(
                     parseNumber("--tempo", text, static_cast<double>(host::kSlowestPercent),
                                 static_cast<double>(host::kFastestPercent)));
             });
}

void addSongSettings(CLI::App& command, host::SongSettings& settings) {
    addValue(command, "transpose", "N", "Semitones up or down, -24 to 24; drums stay",
             [&settings](const std::string& text) {
                 settings.transpose =
                     parseWhole("--transpose", text, -host::kMostTranspose, host::kMostTranspose);
             });
    addTempo(command, settings.tempoPercent);
    addChannelSettings(command, settings);
    addEncoding(command, settings.encoding);
}

} // namespace karaoke
