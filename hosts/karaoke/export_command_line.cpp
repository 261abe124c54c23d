// The options of the commands that make files.
#include "karaoke/export_command_line.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>

#include "karaoke/declared_options.h"
#include "karaoke/option_values.h"
#include "karaoke/play_command_line.h"
#include "karaoke/player_options.h"
#include "karaoke/setting_options.h"

namespace karaoke {

namespace {

constexpr int kLongestOffset = 600000; ///< milliseconds
constexpr int kLowestRate = 8000;      ///< frames a second, what the synthesizer can do
constexpr int kHighestRate = 96000;
constexpr double kMostGain = 40;    ///< decibels
constexpr double kLongestTail = 60; ///< seconds

CLI::Option* addOutput(CLI::App& command, const char* help, std::string& output) {
    return addValue(command, "output,-o", "FILE", help, [&output](const std::string& text) {
        if (text.empty()) {
            throw UsageError("--output: no file was named");
        }
        output = text;
    });
}

void addForm(CLI::App& lyrics, LyricsOptions& options) {
    struct Form {
        const char* name;
        LyricsForm form;
        const char* help;
    };
    constexpr Form kForms[] = {
        {"--lrc", LyricsForm::Lrc, "As LRC with a time for every syllable, for music players"},
        {"--ass", LyricsForm::Ass, "As ASS subtitles with karaoke effects, for video players"},
        {"--srt", LyricsForm::Srt, "As SRT subtitles, one for each line"},
    };
    std::vector<CLI::Option*> flags;
    for (const Form& form : kForms) {
        CLI::Option* const flag = lyrics.add_flag_callback(
            form.name, [&options, form] { options.form = form.form; }, folded(form.help));
        for (CLI::Option* const other : flags) {
            flag->excludes(other);
        }
        flags.push_back(flag);
    }
}

SoundFormat parseFormat(const std::string& option, const std::string& name) {
    constexpr std::array<std::pair<std::string_view, SoundFormat>, 3> kFormats = {
        {{"wav", SoundFormat::Wav}, {"flac", SoundFormat::Flac}, {"ogg", SoundFormat::Ogg}}};
    std::string lowered = name;
    std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const auto& [known, format] : kFormats) {
        if (lowered == known) {
            return format;
        }
    }
    throw UsageError(option + ": '" + name + "' is not one of wav, flac, ogg");
}

void addFileOptions(CLI::App& render, RenderOptions& options) {
    addOutput(render, "Sound file to make: .wav, .flac or .ogg", options.output)->required();
    addValue(
        render, "format", "wav|flac|ogg", "Format of the file, whatever its name",
        [&options](const std::string& text) { options.format = parseFormat("--format", text); });
    addValue(render, "rate", "HZ", "Sample rate, 8000 to 96000 (without the option: 44100)",
             [&options](const std::string& text) {
                 options.rate = parseWhole("--rate", text, kLowestRate, kHighestRate);
             });
    addValue(render, "gain", "DB", "Louder or softer, -40 to 40 decibels",
             [&options](const std::string& text) {
                 options.gain = parseNumber("--gain", text, -kMostGain, kMostGain);
             });
    addValue(render, "tail", "SECONDS",
             "Time that the last sound gets at most to die away, 0 to 60 (without the option: 10)",
             [&options](const std::string& text) {
                 options.tail = parseNumber("--tail", text, 0, kLongestTail);
             });
}

} // namespace

void chooseFormat(RenderOptions& options) {
    if (!options.format) {
        const std::string extension = std::filesystem::path(options.output).extension().string();
        options.format =
            parseFormat("--output", extension.empty() ? extension : extension.substr(1));
    }
}

void addRenderOptions(CLI::App& render, RenderOptions& options) {
    render.footer("Channels are 1 to 16 and programs 1 to 128, as musicians count them.");
    render.add_option("FILE", options.file, "Song (Standard MIDI File, .mid or .kar)")
        ->required()
        ->type_name("");
    addFileOptions(render, options);
    addSongSettings(render, options.play.settings);
    addSoundOptions(render, options.play);
    addRangeOptions(render, options.play);
}

void addLyricsOptions(CLI::App& lyrics, LyricsOptions& options) {
    addForm(lyrics, options);
    addOutput(lyrics, "Write into this file instead of showing the words", options.output);
    addTempo(lyrics, options.tempoPercent);
    addValue(lyrics, "offset", "MS",
             "Let the words come later, or earlier if negative, in these files",
             [&options](const std::string& text) {
                 options.offset = parseWhole("--offset", text, -kLongestOffset, kLongestOffset);
             });
}

} // namespace karaoke
