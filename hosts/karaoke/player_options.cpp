// The options of `karaoke play` that say what is played in which order, and how it is shown.
#include "karaoke/player_options.h"

#include "karaoke/declared_options.h"
#include "karaoke/option_values.h"
#include "karaoke/range_values.h"

namespace karaoke {

namespace {

constexpr std::size_t kSongsTogether = 2;

void addPractice(CLI::App& play, PlayOptions& options) {
    addValue(
        play, "practice", "A:B:START:STEP:LIMIT",
        "Repeat from A to B, at START percent of tempo first, then STEP faster each time up to "
        "LIMIT",
        [&](const std::string& text) { options.practice = parsePractice(text); });
}

void addListOptions(CLI::App& play, PlayOptions& options) {
    play.add_flag("--shuffle", options.shuffle, "Play the songs in a random order");
    play.add_flag("--repeat", options.repeat, "Begin again after the last song");
    play.add_flag("--together", options.together,
                  folded("Play two songs at once, on one output or on two (--device twice)"));
}

void addViewOptions(CLI::App& play, PlayOptions& options) {
    play.add_flag("--plain", options.plain, "Keep to a few rows of the terminal");
    addValue(play, "offset", "MS",
             "Show the words later, or earlier below 0, by -5000 to 5000 milliseconds",
             [&](const std::string& text) {
                 options.settings.displayOffset = parseWhole(
                     "--offset", text, -host::kMostDisplayOffset, host::kMostDisplayOffset);
             });
    CLI::Option* const remember =
        play.add_flag("--remember", options.remember,
                      folded("Play each song with its settings of last time, without asking"));
    play.add_flag("--forget", options.forget, "Forget the settings of last time")
        ->excludes(remember);
}

} // namespace

void addRangeOptions(CLI::App& command, PlayOptions& options) {
    addRepeatable(
        command, "loop", "A:B[xN]",
        "Play from A to B, N times; ticks, or bars as in bar5:bar9x2. Repeated: ranges in "
        "a row, at most 10",
        [&](const std::string& text) {
            options.loops.push_back(parseLoop(text));
            if (options.loops.size() > MM_MAX_LOOPS) {
                throw UsageError("--loop: at most 10 ranges can be played in a row");
            }
        });
    addValue(command, "from", "TICK|barN", "Begin there",
             [&](const std::string& text) { options.from = parsePlace("--from", text); });
}

void addPlayerOptions(CLI::App& play, PlayOptions& options) {
    addRangeOptions(play, options);
    addPractice(play, options);
    addListOptions(play, options);
    addViewOptions(play, options);
}

void checkPlayOptions(const PlayOptions& options) {
    if (options.files.empty()) {
        throw UsageError("play: no song was named");
    }
    if (options.together && options.files.size() != kSongsTogether) {
        throw UsageError("--together: two songs are needed");
    }
    if (options.together && (options.shuffle || options.repeat)) {
        throw UsageError("--together: --shuffle and --repeat are for songs one after the other");
    }
    if (options.devices.size() > (options.together ? kSongsTogether : 1)) {
        throw UsageError(options.together ? "--device: there are two songs, so at most two outputs"
                                          : "--device: only --together plays on two outputs");
    }
    if (options.practice && !options.loops.empty()) {
        throw UsageError("--practice: --loop names other ranges");
    }
}

} // namespace karaoke
