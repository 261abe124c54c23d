// The output that is always there: the software synthesizer, playing through the audio output that
// the machine has. Without one it is silent and takes everything.
#include <fluidsynth.h>

#include <array>
#include <mutex>
#include <string>

#include "platform/linux/alsa_quiet.h"
#include "platform/linux/midi_output.h"
#include "platform/linux/sound_font.h"
#include "platform/linux/synthesizer.h"

namespace {

constexpr const char* kSilentDriver = "none";

// Not among them: "file", which would write one, and drivers that print when their server is not
// there.
constexpr std::array kAudioDrivers = {"pipewire", "pulseaudio", "alsa", "oss"};

struct ChosenDriver {
    std::mutex mutex;
    std::string name; // empty = whatever works
};

ChosenDriver& chosen() {
    static ChosenDriver& instance = *new ChosenDriver;
    return instance;
}

std::string chosenDriver() {
    const std::lock_guard guard(chosen().mutex);
    return chosen().name;
}

fluid_audio_driver_t* startDriver(Synthesizer& synthesizer, const std::string& name) {
    if (fluid_settings_setstr(synthesizer.settings(), "audio.driver", name.c_str()) != FLUID_OK) {
        return nullptr;
    }
    return new_fluid_audio_driver(synthesizer.settings(), synthesizer.synth());
}

fluid_audio_driver_t* startAudio(Synthesizer& synthesizer, const std::string& name) {
    if (synthesizer.synth() == nullptr) {
        return nullptr;
    }
    const QuietAlsa quiet;
    if (!name.empty()) {
        return startDriver(synthesizer, name);
    }
    for (const char* candidate : kAudioDrivers) {
        if (fluid_audio_driver_t* driver = startDriver(synthesizer, candidate)) {
            return driver;
        }
    }
    return nullptr;
}

class SynthOutput final : public MidiOutput {
public:
    SynthOutput() : MidiOutput("Software synthesizer") {}
    ~SynthOutput() override {
        stop();
    }

    MMRESULT open() override {
        const std::string driver = chosenDriver();
        if (driver == kSilentDriver) {
            return MMSYSERR_NOERROR;
        }
        m_synthesizer = std::make_unique<Synthesizer>();
        m_driver = startAudio(*m_synthesizer, driver);
        if (m_driver == nullptr) {
            // Nobody would take the sound, and notes would pile up inside.
            m_synthesizer.reset();
        } else {
            loadChosenFont(*m_synthesizer);
        }
        return MMSYSERR_NOERROR;
    }
    void close() override {
        stop();
    }
    void reset() override {
        if (m_synthesizer) {
            m_synthesizer->reset();
        }
    }
    MMRESULT sendShort(std::uint32_t message) override {
        if (m_synthesizer) {
            m_synthesizer->sendShort(message);
        }
        return MMSYSERR_NOERROR;
    }
    MMRESULT sendLong(std::span<const std::uint8_t> bytes) override {
        if (m_synthesizer) {
            m_synthesizer->sendLong(bytes);
        }
        return MMSYSERR_NOERROR;
    }

private:
    void stop() {
        delete_fluid_audio_driver(m_driver);
        m_driver = nullptr;
        m_synthesizer.reset();
    }

    std::unique_ptr<Synthesizer> m_synthesizer;
    fluid_audio_driver_t* m_driver = nullptr;
};

} // namespace

std::unique_ptr<MidiOutput> makeSynthOutput() {
    return std::make_unique<SynthOutput>();
}

void corvmo_SetAudioDriver(const char* name) {
    const std::lock_guard guard(chosen().mutex);
    chosen().name = name == nullptr ? "" : name;
}
