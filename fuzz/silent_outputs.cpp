// Stands in for the synthesizer and the sequencer ports, so that the targets need no audio library.
#include "platform/linux/midi_output.h"
#include "platform/linux/rendered_output.h"

namespace {

class SilentOutput final : public MidiOutput {
public:
    SilentOutput() : MidiOutput("silent") {}
    MMRESULT open() override {
        return MMSYSERR_NOERROR;
    }
    void close() override {}
    void reset() override {}
    MMRESULT sendShort(std::uint32_t /*message*/) override {
        return MMSYSERR_NOERROR;
    }
    MMRESULT sendLong(std::span<const std::uint8_t> /*bytes*/) override {
        return MMSYSERR_NOERROR;
    }
};

} // namespace

std::unique_ptr<MidiOutput> makeSynthOutput() {
    return std::make_unique<SilentOutput>();
}

MidiOutputs listAlsaOutputs() {
    return {};
}

std::unique_ptr<MidiOutput> makeRenderedOutput(UINT /*rate*/) {
    return std::make_unique<SilentOutput>();
}
