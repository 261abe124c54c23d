// The system's MIDI output functions, the host's choice of outputs, and the recording of what is
// sent.
#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <span>
#include <string>

#include "platform/linux/faults.h"
#include "platform/linux/output_registry.h"
#include "platform/linux/rendered_output.h"
#include "platform/linux/short_message.h"

namespace {

// Never destroyed: a timer thread may still send while the process ends.
OutputRegistry& registry() {
    static OutputRegistry& instance = *new OutputRegistry;
    return instance;
}

class Recorder {
public:
    using Function = void (*)(void* user, const corvmo_sent* message);

    void set(Function function, void* user) {
        const std::lock_guard guard(m_mutex);
        m_function = function;
        m_user = user;
        m_active = function != nullptr;
    }

    void record(UINT output, const std::uint8_t* data, std::uint32_t length) {
        if (!m_active) {
            return;
        }
        const std::shared_lock guard(m_mutex);
        if (m_function != nullptr) {
            const corvmo_sent message = {output, corvmo_GetClock(), data, length};
            m_function(m_user, &message);
        }
    }

private:
    std::atomic<bool> m_active = false;
    std::shared_mutex m_mutex;
    Function m_function = nullptr;
    void* m_user = nullptr;
};

Recorder& recorder() {
    static Recorder& instance = *new Recorder;
    return instance;
}

// What the synthesizer can do, in frames a second.
constexpr UINT kLowestRate = 8000;
constexpr UINT kHighestRate = 96000;

bool isUsable(const MIDIHDR* header, UINT size) {
    return header != nullptr && size >= sizeof(MIDIHDR) && header->lpData != nullptr;
}

} // namespace

UINT midiOutGetNumDevs() {
    return faults::fails("midiOutGetNumDevs") ? 0 : registry().count();
}

MMRESULT midiOutOpen(HMIDIOUT* device, UINT index, DWORD_PTR, DWORD_PTR, DWORD) {
    if (device == nullptr) {
        return MMSYSERR_INVALPARAM;
    }
    if (faults::fails("midiOutOpen")) {
        return MMSYSERR_ALLOCATED;
    }
    return registry().open(index, *device);
}

MMRESULT midiOutClose(HMIDIOUT device) {
    return faults::fails("midiOutClose") ? MIDIERR_STILLPLAYING : registry().close(device);
}

MMRESULT midiOutReset(HMIDIOUT device) {
    if (faults::fails("midiOutReset")) {
        return MMSYSERR_NOMEM;
    }
    const OutputRegistry::Use output = registry().use(device);
    if (!output) {
        return MMSYSERR_INVALHANDLE;
    }
    output->reset();
    return MMSYSERR_NOERROR;
}

MMRESULT midiOutShortMsg(HMIDIOUT device, DWORD message) {
    if (faults::fails("midiOutShortMsg")) {
        return MIDIERR_NOTREADY;
    }
    const OutputRegistry::Use output = registry().use(device);
    if (!output) {
        return MMSYSERR_INVALHANDLE;
    }
    const std::uint32_t length = shortMessageLength(statusOf(message));
    const auto bytes = bytesOf(message);
    // What is no short message shows in the recording as it came.
    const auto shown = length == 0 ? static_cast<std::uint32_t>(bytes.size()) : length;
    recorder().record(output.index(), bytes.data(), shown);
    if (length == 0) {
        return MMSYSERR_INVALPARAM;
    }
    return output->counted(output->sendShort(message));
}

MMRESULT midiOutPrepareHeader(HMIDIOUT device, MIDIHDR* header, UINT size) {
    if (faults::fails("midiOutPrepareHeader")) {
        return MMSYSERR_NOMEM;
    }
    const OutputRegistry::Use output = registry().use(device);
    if (!output) {
        return MMSYSERR_INVALHANDLE;
    }
    if (!isUsable(header, size)) {
        return MMSYSERR_INVALPARAM;
    }
    const MMRESULT result = output->prepare();
    if (result == MMSYSERR_NOERROR) {
        header->dwFlags |= MHDR_PREPARED;
    }
    return result;
}

MMRESULT midiOutLongMsg(HMIDIOUT device, MIDIHDR* header, UINT size) {
    if (faults::fails("midiOutLongMsg")) {
        return MIDIERR_NOTREADY;
    }
    const OutputRegistry::Use output = registry().use(device);
    if (!output) {
        return MMSYSERR_INVALHANDLE;
    }
    if (!isUsable(header, size) || header->dwBufferLength == 0) {
        return MMSYSERR_INVALPARAM;
    }
    if ((header->dwFlags & MHDR_PREPARED) == 0) {
        return MIDIERR_UNPREPARED;
    }
    if ((header->dwFlags & MHDR_INQUEUE) != 0) {
        return MIDIERR_STILLPLAYING;
    }
    const auto* data = reinterpret_cast<const std::uint8_t*>(header->lpData);
    recorder().record(output.index(), data, header->dwBufferLength);
    const MMRESULT result = output->counted(output->sendLong({data, header->dwBufferLength}));
    header->dwFlags &= ~MHDR_DONE;
    header->dwFlags |= result == MMSYSERR_NOERROR ? MHDR_INQUEUE : 0;
    return result;
}

MMRESULT midiOutUnprepareHeader(HMIDIOUT device, MIDIHDR* header, UINT size) {
    if (faults::fails("midiOutUnprepareHeader")) {
        return MIDIERR_STILLPLAYING;
    }
    const OutputRegistry::Use output = registry().use(device);
    if (!output) {
        return MMSYSERR_INVALHANDLE;
    }
    if (!isUsable(header, size)) {
        return MMSYSERR_INVALPARAM;
    }
    if ((header->dwFlags & MHDR_INQUEUE) != 0) {
        if (output->stillPlaying()) {
            return MIDIERR_STILLPLAYING;
        }
        header->dwFlags = (header->dwFlags & ~MHDR_INQUEUE) | MHDR_DONE;
    }
    header->dwFlags &= ~MHDR_PREPARED;
    return MMSYSERR_NOERROR;
}

void corvmo_SetOutputs(const corvmo_output* outputs, UINT count) {
    if (outputs == nullptr) {
        registry().useMachineOutputs();
        return;
    }
    MidiOutputs list;
    for (const corvmo_output& functions : std::span(outputs, count)) {
        list.push_back(makeHostOutput(functions));
    }
    registry().setOutputs(std::move(list));
}

void corvmo_UseRenderedOutput(UINT rate) {
    MidiOutputs list;
    list.push_back(makeRenderedOutput(std::clamp(rate, kLowestRate, kHighestRate)));
    registry().setOutputs(std::move(list));
}

UINT corvmo_GetOutputCount(void) {
    return registry().count();
}

int corvmo_GetOutputName(UINT index, char* name, size_t size) {
    std::string full;
    if (!registry().name(index, full)) {
        return 0;
    }
    if (name != nullptr && size > 0) {
        const std::size_t length = std::min(full.size(), size - 1);
        std::memcpy(name, full.data(), length);
        name[length] = '\0';
    }
    return 1;
}

uint32_t corvmo_GetRefusals(UINT index) {
    return registry().refusals(index);
}

void corvmo_RecordOutputs(void (*sent)(void* user, const corvmo_sent* message), void* user) {
    recorder().set(sent, user);
}
