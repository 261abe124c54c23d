// The program's command line, with CLI11.
#include "karaoke/command_line.h"

#include <CLI/CLI.hpp>

#include "karaoke/declared_options.h"
#include "karaoke/option_values.h"

namespace karaoke {

namespace {

constexpr int kMaxTranspose = 24;
constexpr double kLongestFade = 100; ///< seconds; the engine's curves have too coarse slopes beyond
constexpr double kShortestFade = 0.1;
constexpr double kSlowest = -300;
constexpr double kFastest = 90;
constexpr int kLongestPeriod = 100;
constexpr int kLongestGap = 1000;
constexpr std::size_t kMostDrums = 10;

constexpr const char* kEncodingHelp =
    "Encoding of the song's texts (a name that 'iconv -l' lists); guessed without it";

class CommandLine {
public:
    CommandLine();
    Command parse(int argumentCount, char** arguments);

private:
    void addPlay();
    void addPlaySettings(CLI::App& play);
    void addChannelSettings(CLI::App& play);
    void addOutputSettings(CLI::App& play);
    void addTimeSettings(CLI::App& play);
    void addReader(CLI::App& command, ReadOptions& options);

    CLI::App m_app{"Plays MIDI songs and shows their words and chords.", "karaoke"};
    CLI::App* m_play;
    CLI::App* m_lyrics;
    CLI::App* m_info;
    CLI::App* m_events;
    CLI::App* m_devices;
    bool m_listDevices = false;
    PlayOptions m_playOptions;
    LyricsOptions m_lyricsOptions;
    InfoOptions m_infoOptions;
    ReadOptions m_eventsOptions;
};

CommandLine::CommandLine()
    : m_play(m_app.add_subcommand("play", "Play songs, one after the other")),
      m_lyrics(m_app.add_subcommand("lyrics", "Print a song's words and chords with their times")),
      m_info(m_app.add_subcommand("info", "Print facts about a song")),
      m_events(m_app.add_subcommand("events", "Print everything that a song does, in time order")),
      m_devices(m_app.add_subcommand("devices", "List the MIDI outputs")) {
    m_app.set_version_flag("--version", std::string("karaoke ") + KARAOKE_VERSION,
                           "Print the version and exit");
    m_app.require_subcommand(0, 1);
    for (CLI::App* app : {&m_app, m_play, m_lyrics, m_info, m_events, m_devices}) {
        app->get_formatter()->column_width(kHelpColumn);
    }
    m_app.add_flag("--list-devices", m_listDevices, "List the MIDI outputs and exit");
    m_app.footer("'karaoke COMMAND --help' tells the options of a command.");
    addPlay();
    addReader(*m_lyrics, m_lyricsOptions.song);
    addReader(*m_info, m_infoOptions.song);
    m_info->add_flag("--json", m_infoOptions.json, "Print them as JSON, for other programs");
    addReader(*m_events, m_eventsOptions);
}

void CommandLine::addPlay() {
    CLI::App& play = *m_play;
    play.footer("Channels are 1 to 16 and programs 1 to 128, as musicians count them.\n"
                "Ctrl-C silences the output and ends the program.");
    play.add_option("FILE", m_playOptions.files, "Songs (Standard MIDI Files, .mid or .kar)")
        ->type_name("");
    play.add_flag("--list-devices", m_listDevices, "List the MIDI outputs and exit");
    addPlaySettings(play);
    addChannelSettings(play);
    addOutputSettings(play);
    addTimeSettings(play);
}

void CommandLine::addPlaySettings(CLI::App& play) {
    PlayOptions& options = m_playOptions;
    addValue(play, "transpose", "N", "Semitones up or down, -24 to 24; drums stay",
             [&](const std::string& text) {
                 options.transpose = parseWhole("--transpose", text, -kMaxTranspose, kMaxTranspose);
             });
    addValue(play, "tempo", "PERCENT", "Faster (up to 90) or slower (down to -300)",
             [&](const std::string& text) {
                 options.tempoPercent =
                     static_cast<float>(parseNumber("--tempo", text, kSlowest, kFastest));
             });
    addValue(play, "fade-in", "SECONDS", "Fade in over the first 0.1 to 100 seconds",
             [&](const std::string& text) {
                 options.fadeIn = parseNumber("--fade-in", text, kShortestFade, kLongestFade);
             });
    addValue(play, "fade-out", "SECONDS", "Fade out over the last 0.1 to 100 seconds",
             [&](const std::string& text) {
                 options.fadeOut = parseNumber("--fade-out", text, kShortestFade, kLongestFade);
             });
    play.add_flag("--metronome", options.metronome, "Click on every beat");
    addValue(play, "encoding", "NAME", kEncodingHelp,
             [&](const std::string& text) { options.encoding = parseEncoding(text); });
}

void CommandLine::addChannelSettings(CLI::App& play) {
    PlayOptions& options = m_playOptions;
    addValue(play, "mute", "CH,...", "Do not play the notes of these channels",
             [&](const std::string& text) { options.muted = parseChannels("--mute", text); });
    addValue(play, "solo", "CH,...", "Play the notes of these channels only",
             [&](const std::string& text) { options.solo = parseChannels("--solo", text); });
    addRepeatable(play, "volume", "CH:OFFSET",
                  "Make a channel louder or softer, -127 to 127; may be repeated",
                  [&](const std::string& text) { options.volumes.push_back(parseVolume(text)); });
    addRepeatable(play, "patch", "CH:PROGRAM[:MSB[:LSB]]",
                  "Play a channel with another instrument, bank 0 to 127 each; may be repeated",
                  [&](const std::string& text) { options.patches.push_back(parsePatch(text)); });
    addRepeatable(play, "drums", "FROM:TO",
                  "Play another drum note (0 to 127) for one; may be repeated, at most 10 times",
                  [&](const std::string& text) {
                      options.drums.push_back(parseDrums(text));
                      if (options.drums.size() > kMostDrums) {
                          throw UsageError("--drums: at most 10 notes can be replaced");
                      }
                  });
}

void CommandLine::addOutputSettings(CLI::App& play) {
    PlayOptions& options = m_playOptions;
    addValue(play, "device", "N|NAME",
             "MIDI output, by number or part of its name; 0 is the software synthesizer",
             [&](const std::string& text) { options.device = text; });
    addValue(play, "reset", "gm|gs|xg|none",
             "Reset message sent before each song (without the option: gm)",
             [&](const std::string& text) { options.reset = parseReset(text); });
    CLI::Option* const audio = addValue(
        play, "audio", "DRIVER",
        "Audio output of the software synthesizer: alsa, jack, none, oss, pipewire, portaudio, "
        "pulseaudio or sdl2; without the option whichever works",
        [&](const std::string& text) { options.audioDriver = parseAudioDriver(text); });
    play.add_flag_callback(
            "--silent", [&] { options.audioDriver = "none"; }, "Without sound: --audio none")
        ->excludes(audio);
    addValue(play, "soundfont", "FILE", "Sound font of the software synthesizer",
             [&](const std::string& text) { options.soundFont = parseSoundFont(text); });
    addValue(play, "log", "FILE", "Write every message that an output receives to this file",
             [&](const std::string& text) { options.logFile = text; });
}

void CommandLine::addTimeSettings(CLI::App& play) {
    PlayOptions& options = m_playOptions;
    addValue(play, "period", "MS", "Timer period in milliseconds, 1 to 100 (without the option: 5)",
             [&](const std::string& text) {
                 options.period = parseWhole("--period", text, 1, kLongestPeriod);
             });
    addValue(play, "event-gap", "MS",
             "Pause after each set-up message of a song, for slow instruments, 0 to 1000",
             [&](const std::string& text) {
                 options.eventGap = parseWhole("--event-gap", text, 0, kLongestGap);
             });
    play.add_flag("--fast", options.fast,
                  folded("Play as fast as the machine can, on a clock of its own; the log's times "
                         "are as if played in time"));
}

void CommandLine::addReader(CLI::App& command, ReadOptions& options) {
    command.add_option("FILE", options.file, "Song (Standard MIDI File, .mid or .kar)")
        ->required()
        ->type_name("");
    addValue(command, "encoding", "NAME", kEncodingHelp,
             [&options](const std::string& text) { options.encoding = parseEncoding(text); });
}

Command CommandLine::parse(int argumentCount, char** arguments) {
    try {
        m_app.parse(argumentCount, arguments);
    } catch (const CLI::Success& answered) {
        m_app.exit(answered);
        return NoCommand{};
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    if (m_listDevices || *m_devices) {
        return DevicesCommand{};
    }
    if (*m_play) {
        if (m_playOptions.files.empty()) {
            throw UsageError("play: no song was named");
        }
        return m_playOptions;
    }
    if (*m_lyrics) {
        return m_lyricsOptions;
    }
    if (*m_info) {
        return m_infoOptions;
    }
    if (*m_events) {
        return EventsCommand{m_eventsOptions};
    }
    throw UsageError("no command was given: play, lyrics, info, events or devices");
}

} // namespace

Command parseCommandLine(int argumentCount, char** arguments) {
    return CommandLine().parse(argumentCount, arguments);
}

} // namespace karaoke
