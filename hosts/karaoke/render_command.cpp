// karaoke render: a song as a sound file.
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "karaoke/commands.h"
#include "karaoke/finished_file.h"
#include "karaoke/option_values.h"
#include "karaoke/song_reader.h"
#include "karaoke/song_renderer.h"
#include "shared/time_text.h"

namespace karaoke {

namespace {

constexpr double kDecibelsPerFactor = 20;
constexpr double kTenth = 10;

double decibels(float level) {
    return kDecibelsPerFactor * std::log10(static_cast<double>(level));
}

void refuseToOverwriteTheSong(const RenderOptions& options) {
    std::error_code none;
    if (std::filesystem::equivalent(options.file, options.output, none)) {
        throw UsageError("--output: '" + options.output + "' is the song itself");
    }
}

/// Samples beyond full scale were cut off.
void warnOfDistortion(const RenderOptions& options, float peak) {
    if (peak > 1) {
        const double wanted = std::floor((options.gain - decibels(peak)) * kTenth) / kTenth;
        std::fprintf(
            stderr, "karaoke: %s: the loudest places are distorted; --gain %.1f keeps them clean\n",
            options.output.c_str(), wanted);
    }
}

void tellOnTerminal(const RenderOptions& options, const SongRenderer& renderer) {
    std::fprintf(stderr, "%s: %s", options.output.c_str(),
                 host::timeWithTenths(renderer.seconds()).c_str());
    if (renderer.peak() > 0) {
        std::fprintf(stderr, ", loudest place %.1f dB", decibels(renderer.peak()));
    }
    std::fputs("\n", stderr);
}

/// @return the file is complete; false = a signal has ended the work
bool renderInto(FinishedFile& output, const RenderOptions& options, const host::SongFile& file,
                const host::Song& song, StopSignals& signals) {
    SongRenderer renderer(options);
    SoundFile sound(output.descriptor(), options.format.value_or(SoundFormat::Wav), options.rate,
                    song.title);
    bool onTerminal = false;
    {
        ProgressBar progress(std::filesystem::path(options.output).filename().string());
        renderer.render(file, song, sound, progress, signals);
        onTerminal = progress.visible();
    }
    if (signals.stopping()) {
        return false;
    }
    sound.close();
    output.finish();
    warnOfDistortion(options, renderer.peak());
    if (onTerminal) {
        tellOnTerminal(options, renderer);
    }
    return true;
}

} // namespace

int runRender(const RenderOptions& options) {
    StopSignals signals;
    const host::SongFile file(options.file);
    const host::Song song =
        host::songForDisplay(SongReader().read(file), options.file,
                             {.encoding = options.play.settings.encoding,
                              .tempoPercent = options.play.settings.tempoPercent});
    if (!file.notes().empty()) {
        std::fprintf(stderr, "karaoke: %s: %s\n", options.file.c_str(),
                     host::mendedInOneLine(file.notes()).c_str());
    }
    refuseToOverwriteTheSong(options);
    FinishedFile output(options.output);
    signals.setLastResort([&output] { output.abandon(); });
    const bool complete = renderInto(output, options, file, song, signals);
    signals.setLastResort({});
    return complete ? 0 : StopSignals::exitCode(signals.received());
}

} // namespace karaoke
