// The program's command line, with CLI11.
#include "karaoke/command_line.h"

#include <CLI/CLI.hpp>

#include "karaoke/declared_options.h"
#include "karaoke/export_command_line.h"
#include "karaoke/option_values.h"
#include "karaoke/play_command_line.h"
#include "karaoke/setting_options.h"

namespace karaoke {

namespace {

class CommandLine {
public:
    CommandLine();
    Command parse(int argumentCount, char** arguments);

private:
    void addReader(CLI::App& command, ReadOptions& options);

    CLI::App m_app{"Plays MIDI songs and shows their words and chords.", "karaoke"};
    CLI::App* m_play;
    CLI::App* m_render;
    CLI::App* m_lyrics;
    CLI::App* m_info;
    CLI::App* m_events;
    CLI::App* m_devices;
    CLI::App* m_checkLog;
    bool m_listDevices = false;
    PlayOptions m_playOptions;
    RenderOptions m_renderOptions;
    LyricsOptions m_lyricsOptions;
    InfoOptions m_infoOptions;
    ReadOptions m_eventsOptions;
    CheckLogCommand m_checkLogCommand;
};

CommandLine::CommandLine()
    : m_play(m_app.add_subcommand("play", "Play songs, one after the other")),
      m_render(m_app.add_subcommand("render", "Make a sound file of a song")),
      m_lyrics(m_app.add_subcommand("lyrics", "Print a song's words and chords with their times")),
      m_info(m_app.add_subcommand("info", "Print facts about a song")),
      m_events(m_app.add_subcommand("events", "Print everything that a song does, in time order")),
      m_devices(m_app.add_subcommand("devices", "List the MIDI outputs")),
      m_checkLog(m_app.add_subcommand("check-log", "Look for stuck notes in a MIDI log")) {
    m_app.set_version_flag("--version", std::string("karaoke ") + KARAOKE_VERSION,
                           "Print the version and exit");
    m_app.require_subcommand(0, 1);
    for (CLI::App* app :
         {&m_app, m_play, m_render, m_lyrics, m_info, m_events, m_devices, m_checkLog}) {
        app->get_formatter()->column_width(kHelpColumn);
    }
    m_app.add_flag("--list-devices", m_listDevices, "List the MIDI outputs and exit");
    m_app.footer("'karaoke COMMAND --help' tells the options of a command.");
    m_play->add_flag("--list-devices", m_listDevices, "List the MIDI outputs and exit");
    addPlayOptions(*m_play, m_playOptions);
    addRenderOptions(*m_render, m_renderOptions);
    addReader(*m_lyrics, m_lyricsOptions.song);
    addLyricsOptions(*m_lyrics, m_lyricsOptions);
    addReader(*m_info, m_infoOptions.song);
    m_info->add_flag("--json", m_infoOptions.json, "Print them as JSON, for other programs");
    addReader(*m_events, m_eventsOptions);
    m_checkLog->add_option("FILE", m_checkLogCommand.file, "MIDI log, as play --midi-log writes it")
        ->required()
        ->type_name("");
}

void CommandLine::addReader(CLI::App& command, ReadOptions& options) {
    command.add_option("FILE", options.file, "Song (Standard MIDI File, .mid or .kar)")
        ->required()
        ->type_name("");
    addEncoding(command, options.encoding);
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
    if (*m_render) {
        chooseFormat(m_renderOptions);
        return m_renderOptions;
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
    if (*m_checkLog) {
        return m_checkLogCommand;
    }
    throw UsageError(
        "no command was given: play, render, lyrics, info, events, devices or check-log");
}

} // namespace

Command parseCommandLine(int argumentCount, char** arguments) {
    return CommandLine().parse(argumentCount, arguments);
}

} // namespace karaoke
