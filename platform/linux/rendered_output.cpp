// The software synthesizer as an output whose sound the host takes itself.
#include "platform/linux/rendered_output.h"

#include <fluidsynth.h>

#include <algorithm>
#include <limits>
#include <mutex>

#include "platform/linux/sound_font.h"
#include "platform/linux/synthesizer.h"

namespace {

constexpr int kSamplesPerFrame = 2;

// What can be rendered now; the outputs themselves are the registry's.
struct Rendering {
    std::mutex mutex;
    Synthesizer* synthesizer = nullptr;
};

Rendering& rendering() {
    static Rendering& instance = *new Rendering;
    return instance;
}

class RenderedOutput final : public MidiOutput {
public:
    explicit RenderedOutput(UINT rate) : MidiOutput("Software synthesizer"), m_rate(rate) {}
    ~RenderedOutput() override {
        stop();
    }

    MMRESULT open() override {
        m_synthesizer = std::make_unique<Synthesizer>(m_rate);
        if (loadChosenFont(*m_synthesizer)) {
            const std::lock_guard guard(rendering().mutex);
            rendering().synthesizer = m_synthesizer.get();
        }
        return MMSYSERR_NOERROR;
    }
    void close() override {
        stop();
    }
    void reset() override {
        m_synthesizer->reset();
    }
    MMRESULT sendShort(std::uint32_t message) override {
        m_synthesizer->sendShort(message);
        return MMSYSERR_NOERROR;
    }
    MMRESULT sendLong(std::span<const std::uint8_t> bytes) override {
        m_synthesizer->sendLong(bytes);
        return MMSYSERR_NOERROR;
    }

private:
    void stop() {
        const std::lock_guard guard(rendering().mutex);
        if (rendering().synthesizer == m_synthesizer.get()) {
            rendering().synthesizer = nullptr;
        }
        m_synthesizer.reset();
    }

    UINT m_rate;
    std::unique_ptr<Synthesizer> m_synthesizer;
};

} // namespace

std::unique_ptr<MidiOutput> makeRenderedOutput(UINT rate) {
    return std::make_unique<RenderedOutput>(rate);
}

int corvmo_RenderAudio(float* stereo, size_t frames) {
    const std::size_t samples = frames * kSamplesPerFrame;
    const std::lock_guard guard(rendering().mutex);
    Synthesizer* const synthesizer = rendering().synthesizer;
    if (synthesizer == nullptr || frames > std::numeric_limits<int>::max() ||
        fluid_synth_write_float(synthesizer->synth(), static_cast<int>(frames), stereo, 0,
                                kSamplesPerFrame, stereo, 1, kSamplesPerFrame) != FLUID_OK) {
        std::fill_n(stereo, samples, 0.0F);
        return 0;
    }
    return 1;
}
