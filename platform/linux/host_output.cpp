// An output whose work the host does.
#include "platform/linux/midi_output.h"

namespace {

class HostOutput final : public MidiOutput {
public:
    explicit HostOutput(const corvmo_output& functions)
        : MidiOutput(functions.name == nullptr ? "" : functions.name), m_functions(functions) {
        m_functions.name = nullptr;
    }

    MMRESULT open() override {
        return m_functions.open == nullptr ? MMSYSERR_NOERROR : m_functions.open(m_functions.user);
    }
    void close() override {
        if (m_functions.close != nullptr) {
            m_functions.close(m_functions.user);
        }
    }
    void reset() override {
        if (m_functions.reset != nullptr) {
            m_functions.reset(m_functions.user);
        }
    }
    MMRESULT sendShort(std::uint32_t message) override {
        return m_functions.short_message == nullptr
                   ? MMSYSERR_NOERROR
                   : m_functions.short_message(m_functions.user, message);
    }
    MMRESULT sendLong(std::span<const std::uint8_t> bytes) override {
        return m_functions.long_message == nullptr
                   ? MMSYSERR_NOERROR
                   : m_functions.long_message(m_functions.user, bytes.data(),
                                              static_cast<std::uint32_t>(bytes.size()));
    }
    MMRESULT prepare() override {
        return m_functions.prepare == nullptr ? MMSYSERR_NOERROR
                                              : m_functions.prepare(m_functions.user);
    }
    bool stillPlaying() override {
        return m_functions.still_playing != nullptr &&
               m_functions.still_playing(m_functions.user) != 0;
    }

private:
    corvmo_output m_functions;
};

} // namespace

std::unique_ptr<MidiOutput> makeHostOutput(const corvmo_output& functions) {
    return std::make_unique<HostOutput>(functions);
}
