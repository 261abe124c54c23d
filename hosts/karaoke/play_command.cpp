// karaoke play: finds the songs and plays them.
#include <cstdio>
#include <optional>
#include <vector>

#include "karaoke/commands.h"
#include "karaoke/devices.h"
#include "karaoke/play_list.h"
#include "karaoke/play_session.h"
#include "karaoke/player_options.h"
#include "karaoke/song_reader.h"
#include "shared/error_texts.h"

namespace karaoke {

namespace {

/// Of each player.
std::vector<std::uint32_t> chosenOutputs(const PlayOptions& options) {
    const std::vector<std::string> names = outputNames();
    std::vector<std::uint32_t> devices;
    for (const std::string& wanted : options.devices) {
        devices.push_back(chooseOutput(wanted, names));
    }
    if (devices.empty()) {
        devices.push_back(chooseOutput("0", names));
    }
    return devices;
}

/// Nothing when the song cannot be played, which is reported.
std::optional<PlayedSong> read(SongReader& reader, const std::string& file) {
    try {
        host::SongFile song{host::pathOf(file)};
        host::RawSong raw = reader.read(song);
        return PlayedSong(std::move(song), std::move(raw));
    } catch (const host::SongError& error) {
        std::fprintf(stderr, "karaoke: %s\n", error.what());
        return std::nullopt;
    }
}

/// Goes to the first song of a list that can be played. No output is opened for songs that cannot.
std::optional<PlayedSong> readFirst(PlayList& list, std::size_t& failures) {
    SongReader reader;
    for (std::size_t tries = 0; tries < list.size(); ++tries) {
        if (std::optional<PlayedSong> song = read(reader, list.file())) {
            return song;
        }
        ++failures;
        list.move(1);
    }
    return std::nullopt;
}

std::vector<PlayedSong> readAll(const std::vector<std::string>& files) {
    SongReader reader;
    std::vector<PlayedSong> songs;
    for (const std::string& file : files) {
        if (std::optional<PlayedSong> song = read(reader, file)) {
            songs.push_back(std::move(*song));
        }
    }
    return songs;
}

/// @return how many songs could not be played
std::size_t playList(const PlayOptions& options, StopSignals& signals,
                     const std::vector<std::uint32_t>& devices) {
    PlayList list(options);
    std::size_t failures = 0;
    const std::optional<PlayedSong> first = readFirst(list, failures);
    if (first && !signals.stopping()) {
        PlaySession session(options, signals, devices);
        failures += session.play(list, *first);
        session.close();
    }
    return failures;
}

std::size_t playTogether(const PlayOptions& options, StopSignals& signals,
                         const std::vector<std::uint32_t>& devices) {
    const std::vector<PlayedSong> songs = readAll(options.files);
    std::size_t failures = options.files.size() - songs.size();
    if (failures == 0 && !signals.stopping()) {
        PlaySession session(options, signals, devices);
        failures += session.playTogether(songs.front(), songs.back());
        session.close();
    }
    return failures;
}

} // namespace

int runPlay(const PlayOptions& options) {
    StopSignals signals;
    checkPlayOptions(options);
    const std::vector<std::uint32_t> devices = chosenOutputs(options);
    const std::size_t failures = options.together ? playTogether(options, signals, devices)
                                                  : playList(options, signals, devices);
    if (signals.received() != 0) {
        return StopSignals::exitCode(signals.received());
    }
    return failures == 0 ? 0 : 1;
}

} // namespace karaoke
