// The timing program on Windows: the DLL's MIDI calls go to an output here, and the bare timer is a periodic
// multimedia timer.
#include "bench/timing.h"
#include "corvmo32.h"
#include "tests/support/import_table.h"

namespace bench {

namespace {

void (*onMessage)() = nullptr;

UINT WINAPI getNumDevs() {
    return 1;
}

MMRESULT WINAPI openOutput(HMIDIOUT* device, UINT, DWORD_PTR, DWORD_PTR, DWORD) {
    static int output;
    *device = reinterpret_cast<HMIDIOUT>(&output);
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI closeOutput(HMIDIOUT) {
    return MMSYSERR_NOERROR;
}

MMRESULT WINAPI shortMessage(HMIDIOUT, DWORD) {
    onMessage();
    return MMSYSERR_NOERROR;
}

template <typename Function>
void replace(const char* name, Function* function) {
    replaceImport(GetModuleHandleA("corvmo32.dll"), name, reinterpret_cast<const void*>(function));
}

void CALLBACK callBack(UINT, UINT, DWORD_PTR callback, DWORD_PTR, DWORD_PTR) {
    reinterpret_cast<void (*)()>(callback)();
}

} // namespace

void setOutput(void (*message)()) {
    onMessage = message;
    replace("midiOutGetNumDevs", getNumDevs);
    replace("midiOutOpen", openOutput);
    replace("midiOutClose", closeOutput);
    replace("midiOutReset", closeOutput);
    replace("midiOutShortMsg", shortMessage);
}

struct BareTimer::Parts {
    UINT period;
    UINT timer;
};

BareTimer::BareTimer(int milliseconds, void (*callback)())
    : m_parts(new Parts{static_cast<UINT>(milliseconds), 0}) {
    timeBeginPeriod(m_parts->period);
    m_parts->timer = timeSetEvent(m_parts->period, m_parts->period, callBack,
                                  reinterpret_cast<DWORD_PTR>(callback), TIME_PERIODIC);
}

BareTimer::~BareTimer() {
    timeKillEvent(m_parts->timer);
    timeEndPeriod(m_parts->period);
    delete m_parts;
}

} // namespace bench
