// What a listener sets for one song.
#include "shared/song_settings.h"

#include <algorithm>
#include <cstdio>

namespace host {

namespace {

void append(std::string& line, const std::string& part) {
    line += (line.empty() ? "" : ", ") + part;
}

std::string describeChannel(const ChannelSettings& channel) {
    std::string words;
    const auto tell = [&words](bool set, const std::string& text) {
        if (set) {
            words += " " + text;
        }
    };
    tell(channel.muted, "muted");
    tell(channel.solo, "solo");
    tell(channel.volume != 0, "volume " + signedText(channel.volume));
    tell(channel.pan != 0, "pan " + signedText(channel.pan));
    tell(channel.reverb != 0, "reverb " + signedText(channel.reverb));
    tell(channel.chorus != 0, "chorus " + signedText(channel.chorus));
    tell(channel.program != kSongsProgram, "program " + std::to_string(channel.program + 1));
    return words;
}

} // namespace

bool SongSettings::anySolo() const {
    return std::any_of(channels.begin(), channels.end(),
                       [](const ChannelSettings& channel) { return channel.solo; });
}

bool SongSettings::silences(int channel) const {
    const ChannelSettings& own = channels.at(static_cast<std::size_t>(channel));
    return own.muted || (anySolo() && !own.solo);
}

SongSettings withChanges(const SongSettings& settings, const SongSettings& before,
                         const SongSettings& after) {
    SongSettings changed = settings;
    const auto take = [](const auto& from, const auto& to, auto& value) {
        if (from != to) {
            value = to;
        }
    };
    take(before.tempoPercent, after.tempoPercent, changed.tempoPercent);
    take(before.transpose, after.transpose, changed.transpose);
    take(before.encoding, after.encoding, changed.encoding);
    take(before.displayOffset, after.displayOffset, changed.displayOffset);
    for (std::size_t i = 0; i < changed.channels.size(); ++i) {
        const ChannelSettings& from = before.channels[i];
        const ChannelSettings& to = after.channels[i];
        ChannelSettings& channel = changed.channels[i];
        for (const auto member :
             {&ChannelSettings::volume, &ChannelSettings::pan, &ChannelSettings::reverb,
              &ChannelSettings::chorus, &ChannelSettings::program, &ChannelSettings::bankMsb,
              &ChannelSettings::bankLsb}) {
            take(from.*member, to.*member, channel.*member);
        }
        take(from.muted, to.muted, channel.muted);
        take(from.solo, to.solo, channel.solo);
    }
    return changed;
}

std::string signedText(int number) {
    return (number > 0 ? "+" : "") + std::to_string(number);
}

std::string signedText(float number) {
    char text[32];
    std::snprintf(text, sizeof text, number == 0 ? "%g" : "%+g", static_cast<double>(number));
    return text;
}

std::string describe(const SongSettings& settings) {
    std::string line;
    if (settings.tempoPercent != 0) {
        append(line, "tempo " + signedText(settings.tempoPercent));
    }
    if (settings.transpose != 0) {
        append(line, "key " + signedText(settings.transpose));
    }
    for (int channel = 0; channel < kChannels; ++channel) {
        const std::string words =
            describeChannel(settings.channels[static_cast<std::size_t>(channel)]);
        if (!words.empty()) {
            append(line, "channel " + std::to_string(channel + 1) + words);
        }
    }
    if (!settings.encoding.empty()) {
        append(line, "encoding " + settings.encoding);
    }
    if (settings.displayOffset != 0) {
        append(line, "words " + signedText(settings.displayOffset) + " ms");
    }
    return line;
}

} // namespace host
