// Turns a song into sound, as fast as the machine can.
#pragma once

#include <cstdint>
#include <vector>

#include "karaoke/progress_bar.h"
#include "karaoke/render_options.h"
#include "karaoke/sound_file.h"
#include "karaoke/stop_signals.h"
#include "karaoke/window.h"
#include "shared/engine_session.h"
#include "shared/song_controls.h"

namespace karaoke {

/// Runs the engine on its manual clock, with the synthesizer's sound for output, while it lives. No other
/// engine may run.
class SongRenderer {
public:
    /// @throws host::HostError  when the engine does not start
    explicit SongRenderer(const RenderOptions& options);
    ~SongRenderer();
    SongRenderer(const SongRenderer&) = delete;
    SongRenderer& operator=(const SongRenderer&) = delete;

    /// Writes the sound of a song from its beginning until its last note has died away. Ends early when a
    /// signal asks to stop.
    /// @throws host::HostError  why there is no sound, or no room for it
    void render(const host::SongFile& file, const host::Song& song, SoundFile& sound,
                ProgressBar& progress, StopSignals& signals);

    /// Seconds that were written.
    double seconds() const;
    /// The loudest sample, the gain applied; full scale is 1.
    float peak() const {
        return m_peak;
    }

private:
    void write(std::uint64_t frames, SoundFile& sound);
    void writeUpTo(double seconds, SoundFile& sound);
    void passTime(SoundFile& sound);
    void dieAway(SoundFile& sound, StopSignals& signals);

    const RenderOptions& m_options;
    Window m_window;
    host::EngineSession m_engine;
    host::SongControls m_controls;
    std::vector<float> m_block;
    float m_gain;
    float m_peak = 0;
    float m_blockPeak = 0;
    std::uint64_t m_frames = 0;
    double m_start = 0;         ///< seconds written before the song began to play
    std::uint64_t m_played = 0; ///< milliseconds since then
};

} // namespace karaoke
