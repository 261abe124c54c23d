// karaoke: plays MIDI songs on the terminal and shows their words and chords.
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <langinfo.h>

#include "karaoke/command_line.h"
#include "karaoke/commands.h"
#include "karaoke/option_values.h"
#include "karaoke/output_error.h"

namespace {

enum ExitCode { kDone = 0, kFailed = 1, kUsage = 2 };

/// Widths of characters are the locale's; the program itself always writes UTF-8.
void useUtf8Characters() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
}

struct Runner {
    int operator()(const karaoke::NoCommand&) const {
        return kDone;
    }
    int operator()(const karaoke::PlayOptions& options) const {
        return karaoke::runPlay(options);
    }
    int operator()(const karaoke::RenderOptions& options) const {
        return karaoke::runRender(options);
    }
    int operator()(const karaoke::LyricsOptions& options) const {
        return karaoke::runLyrics(options);
    }
    int operator()(const karaoke::InfoOptions& options) const {
        return karaoke::runInfo(options);
    }
    int operator()(const karaoke::EventsCommand& command) const {
        return karaoke::runEvents(command.options);
    }
    int operator()(const karaoke::DevicesCommand&) const {
        return karaoke::runDevices();
    }
    int operator()(const karaoke::CheckLogCommand& command) const {
        return karaoke::runCheckLog(command.file);
    }
};

/// What is still in the buffer may not fit on a full disk.
int flushed(int code) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw karaoke::OutputError();
    }
    return code;
}

int run(int argumentCount, char** arguments) {
    try {
        return flushed(std::visit(Runner{}, karaoke::parseCommandLine(argumentCount, arguments)));
    } catch (const karaoke::UsageError& error) {
        std::fprintf(stderr, "karaoke: %s (see 'karaoke --help')\n", error.what());
        return kUsage;
    } catch (const karaoke::OutputError& error) {
        if (!error.readerGone()) {
            std::fprintf(stderr, "karaoke: %s\n", error.what());
        }
        return kFailed;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "karaoke: %s\n", error.what());
        return kFailed;
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    useUtf8Characters();
    // A reader that goes away must not leave notes sounding: writing fails instead.
    std::signal(SIGPIPE, SIG_IGN);
    return run(argumentCount, arguments);
}
