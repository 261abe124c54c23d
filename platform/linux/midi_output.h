// One MIDI output, whatever is behind it, and the kinds of outputs that there are.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/linux/system_names.h"

/// The registry opens and closes an output one call at a time and only sends to an open one.
/// Sending happens on several threads at once.
class MidiOutput {
public:
    explicit MidiOutput(std::string name) : m_name(std::move(name)) {}
    virtual ~MidiOutput() = default;
    MidiOutput(const MidiOutput&) = delete;
    MidiOutput& operator=(const MidiOutput&) = delete;

    const std::string& name() const {
        return m_name;
    }

    virtual MMRESULT open() = 0;
    virtual void close() = 0;
    /// All notes off, and no pedal held, on every channel.
    virtual void reset() = 0;
    /// A status byte that begins a short message in bits 0 to 7, data bytes above it; takes no
    /// memory.
    virtual MMRESULT sendShort(std::uint32_t message) = 0;
    virtual MMRESULT sendLong(std::span<const std::uint8_t> bytes) = 0;
    /// Asked before a long message.
    virtual MMRESULT prepare() {
        return MMSYSERR_NOERROR;
    }
    /// Whether the last long message is not finished yet.
    virtual bool stillPlaying() {
        return false;
    }

    /// Notes what became of a message.
    MMRESULT counted(MMRESULT result) {
        if (result == MMSYSERR_NOERROR) {
            m_refusals.store(0, std::memory_order_relaxed);
        } else {
            m_refusals.fetch_add(1, std::memory_order_relaxed);
        }
        return result;
    }
    /// Messages refused in a row.
    std::uint32_t refusals() const {
        return m_refusals.load(std::memory_order_relaxed);
    }
    void forgetRefusals() {
        m_refusals.store(0, std::memory_order_relaxed);
    }

private:
    std::string m_name;
    std::atomic<std::uint32_t> m_refusals = 0;
};

using MidiOutputs = std::vector<std::unique_ptr<MidiOutput>>;

std::unique_ptr<MidiOutput> makeHostOutput(const corvmo_output& functions);
std::unique_ptr<MidiOutput> makeSynthOutput();
/// Every ALSA sequencer port that can be written to now; none when there is no sequencer.
MidiOutputs listAlsaOutputs();
