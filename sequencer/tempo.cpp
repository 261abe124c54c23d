// The tempo rule: the song's tempo, changed by the host's percentage, in IEEE double arithmetic on every
// target.
#include "engine/notifications.h"
#include "sequencer/sequencer.h"

namespace {

constexpr double kSlowestTempo = 0xFFFFFF; ///< microseconds per quarter note
constexpr int kTempoFractionBits = 8;

/// Keeps the old x86 floating-point unit from computing in more precision than a double has.
class DoublePrecision {
public:
    DoublePrecision() noexcept : m_before(_controlfp(0, 0)) {
        _controlfp(_PC_53, _MCW_PC);
    }
    ~DoublePrecision() {
        _controlfp(m_before, _MCW_PC);
    }
    DoublePrecision(const DoublePrecision&) = delete;
    DoublePrecision& operator=(const DoublePrecision&) = delete;

private:
    unsigned m_before;
};

/// Microseconds per quarter note after the percentage; below 1 when there is no such tempo.
double changedTempo(std::uint32_t songTempo, float percent) noexcept {
    const DoublePrecision precision;
    // Volatile, so that the compiler computes after the precision is set and before it is put back.
    const volatile double tempo = songTempo;
    const volatile double change = static_cast<double>(percent) * 0.01;
    const volatile double difference = change * tempo;
    const volatile double changed = tempo - difference;
    return changed;
}

} // namespace

void applyTempo(MIDIOUT& player, std::uint32_t songTempo) noexcept {
    const double changed = changedTempo(songTempo, loadShared<float>(&player.tempoPercent));
    if (!(changed >= 1.0)) {
        return;
    }
    const double held = changed < kSlowestTempo ? changed : kSlowestTempo;
    storeShared<std::uint32_t>(&player.tempo, static_cast<std::uint32_t>(held)
                                                  << kTempoFractionBits);
}

std::uint32_t tempoOf(const MMEVENT& event) noexcept {
    return static_cast<std::uint32_t>(event.byte1 << 16 | event.byte2 << 8 | event.byte3);
}

void postTempo(const MIDIOUT& player, int origin) noexcept {
    if (wants(player, MMOPT_TEMPO)) {
        post(MMN_TEMPO, static_cast<WPARAM>(origin), player.tempo >> kTempoFractionBits);
    }
}
