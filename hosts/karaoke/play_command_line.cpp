// The options of `karaoke play`.
#include "karaoke/play_command_line.h"

#include "karaoke/declared_options.h"
#include "karaoke/option_values.h"
#include "karaoke/player_options.h"
#include "karaoke/setting_options.h"

namespace karaoke {

namespace {

constexpr double kLongestFade = 100; ///< seconds; the engine's curves have too coarse slopes beyond
constexpr double kShortestFade = 0.1;
constexpr int kLongestPeriod = 100;
constexpr int kLongestGap = 1000;
constexpr std::size_t kMostDrums = 10;

void addOutputOptions(CLI::App& play, PlayOptions& options) {
    addRepeatable(play, "device", "N|NAME",
                  "MIDI output, by number or part of its name; 0 is the software synthesizer",
                  [&](const std::string& text) { options.devices.push_back(text); });
    CLI::Option* const audio = addValue(
        play, "audio", "DRIVER",
        "Audio output of the software synthesizer: alsa, jack, none, oss, pipewire, portaudio, "
        "pulseaudio or sdl2; without the option whichever works",
        [&](const std::string& text) { options.audioDriver = parseAudioDriver(text); });
    play.add_flag_callback(
            "--silent", [&] { options.audioDriver = "none"; }, "Without sound: --audio none")
        ->excludes(audio);
    addValue(play, "midi-log", "FILE", "Write every message that an output receives to this file",
             [&](const std::string& text) { options.logFile = text; });
}

void addTimeOptions(CLI::App& play, PlayOptions& options) {
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

} // namespace

void addSoundOptions(CLI::App& command, PlayOptions& options) {
    addValue(command, "fade-in", "SECONDS", "Fade in over the first 0.1 to 100 seconds",
             [&](const std::string& text) {
                 options.fadeIn = parseNumber("--fade-in", text, kShortestFade, kLongestFade);
             });
    addValue(command, "fade-out", "SECONDS", "Fade out over the last 0.1 to 100 seconds",
             [&](const std::string& text) {
                 options.fadeOut = parseNumber("--fade-out", text, kShortestFade, kLongestFade);
             });
    command.add_flag("--metronome", options.metronome, "Click on every beat");
    addRepeatable(command, "drums", "FROM:TO",
                  "Play another drum note (0 to 127) for one; may be repeated, at most 10 times",
                  [&](const std::string& text) {
                      options.drums.push_back(parseDrums(text));
                      if (options.drums.size() > kMostDrums) {
                          throw UsageError("--drums: at most 10 notes can be replaced");
                      }
                  });
    addValue(command, "reset", "gm|gs|xg|none",
             "Reset message sent before each song (without the option: gm)",
             [&](const std::string& text) { options.reset = parseReset(text); });
    addValue(command, "soundfont", "FILE", "Sound font of the software synthesizer",
             [&](const std::string& text) { options.soundFont = parseSoundFont(text); });
}

void addPlayOptions(CLI::App& play, PlayOptions& options) {
    play.footer("Channels are 1 to 16 and programs 1 to 128, as musicians count them.\n"
                "Ctrl-C silences the output and ends the program.");
    play.add_option("FILE", options.files, "Songs (.mid, .kar) and folders of them")->type_name("");
    addPlayerOptions(play, options);
    addSongSettings(play, options.settings);
    addSoundOptions(play, options);
    addOutputOptions(play, options);
    addTimeOptions(play, options);
}

} // namespace karaoke
