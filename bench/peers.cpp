// The peers' calls. Each ends the program when its library fails: a benchmark of a failure would mislead.
#include "bench/peers.h"

#include <fluidsynth.h>
#include <smf.h>
#include <sys/resource.h>
#include <wildmidi_lib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wconversion"
#include <portSMF/allegro.h>
#pragma GCC diagnostic pop

namespace bench {

namespace {

void expect(bool done, const char* what) {
    if (!done) {
        std::fprintf(stderr, "%s failed\n", what);
        std::abort();
    }
}

int doNothing(void* /*data*/, fluid_midi_event_t* /*event*/) {
    return 0;
}

constexpr int kFrames = 64;        ///< one block
constexpr int kSampleRate = 48000; ///< for WildMIDI
constexpr double kRush = 60000000; ///< quarter notes a minute
constexpr double kSecond = 1e6;    ///< microseconds

} // namespace

struct FluidPlayer::Parts {
    fluid_settings_t* settings = new_fluid_settings();
    fluid_synth_t* synth = nullptr;
    fluid_player_t* player = nullptr;
};

FluidPlayer::FluidPlayer() : m_parts(std::make_unique<Parts>()) {
    fluid_settings_setstr(m_parts->settings, "player.timing-source", "sample");
    fluid_settings_setint(m_parts->settings, "synth.reverb.active", 0);
    fluid_settings_setint(m_parts->settings, "synth.chorus.active", 0);
    m_parts->synth = new_fluid_synth(m_parts->settings);
    m_parts->player = new_fluid_player(m_parts->synth);
    expect(m_parts->player != nullptr, "new_fluid_player");
    fluid_player_set_playback_callback(m_parts->player, doNothing, nullptr);
}

FluidPlayer::~FluidPlayer() {
    delete_fluid_player(m_parts->player);
    delete_fluid_synth(m_parts->synth);
    delete_fluid_settings(m_parts->settings);
}

void FluidPlayer::add(const std::string& file) {
    expect(fluid_player_add(m_parts->player, file.c_str()) == FLUID_OK, "fluid_player_add");
    expect(fluid_player_play(m_parts->player) == FLUID_OK, "fluid_player_play");
}

void FluidPlayer::step() {
    std::array<float, kFrames> left{};
    std::array<float, kFrames> right{};
    fluid_synth_write_float(m_parts->synth, kFrames, left.data(), 0, 1, right.data(), 0, 1);
}

void FluidPlayer::rush() {
    fluid_player_set_tempo(m_parts->player, FLUID_PLAYER_TEMPO_EXTERNAL_BPM, kRush);
}

void FluidPlayer::seek(int tick) {
    expect(fluid_player_seek(m_parts->player, tick) == FLUID_OK, "fluid_player_seek");
}

int FluidPlayer::length() const {
    return fluid_player_get_total_ticks(m_parts->player);
}

WildReader::WildReader() {
    const std::filesystem::path config =
        std::filesystem::temp_directory_path() / "corvmo-bench-wildmidi.cfg";
    std::ofstream(config) << "# no instruments\n";
    expect(WildMidi_Init(config.c_str(), kSampleRate, 0) == 0, "WildMidi_Init");
}

WildReader::~WildReader() {
    WildMidi_Shutdown();
}

void* WildReader::open(const std::string& file) {
    midi* const song = WildMidi_Open(file.c_str());
    expect(song != nullptr, "WildMidi_Open");
    return song;
}

void WildReader::close(void* song) {
    WildMidi_Close(song);
}

void* openWithLibsmf(const std::string& file) {
    smf_t* const song = smf_load(file.c_str());
    expect(song != nullptr, "smf_load");
    return song;
}

void* openWithPortsmf(const std::string& file) {
    auto* const song = new Alg_seq(file.c_str(), true);
    expect(song->get_read_error() == alg_no_error, "Alg_seq");
    return song;
}

void closeWithPortsmf(void* song) {
    delete static_cast<Alg_seq*>(song);
}

double runMidicsv(const std::string& file) {
    const auto childTime = [] {
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / kSecond;
    };
    const double before = childTime();
    expect(std::system(("midicsv '" + file + "' /dev/null").c_str()) == 0, "midicsv");
    return childTime() - before;
}

} // namespace bench
