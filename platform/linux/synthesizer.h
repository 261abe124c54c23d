// The software synthesizer: MIDI in, sound out. Who takes the sound is not its affair.
#pragma once

#include <cstdint>
#include <span>
#include <string>

typedef struct _fluid_hashtable_t fluid_settings_t;
typedef struct _fluid_synth_t fluid_synth_t;

/// Safe for any thread. Does nothing when the synthesizer could not be made.
class Synthesizer {
public:
    /// @param rate  frames a second; 0 = the audio output decides
    explicit Synthesizer(unsigned rate = 0);
    ~Synthesizer();
    Synthesizer(const Synthesizer&) = delete;
    Synthesizer& operator=(const Synthesizer&) = delete;

    /// Null when it could not be made.
    fluid_settings_t* settings() {
        return m_settings;
    }
    fluid_synth_t* synth() {
        return m_synth;
    }

    /// False when the file is not a sound font; the synthesizer stays silent then.
    bool loadFont(const std::string& path);
    void sendShort(std::uint32_t message);
    void sendLong(std::span<const std::uint8_t> bytes);
    /// All notes off, and no pedal held, on every channel.
    void reset();

private:
    fluid_settings_t* m_settings = nullptr;
    fluid_synth_t* m_synth = nullptr;
};
