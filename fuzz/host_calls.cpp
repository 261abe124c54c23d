// Calls of a host by chance: any export with any arguments in any order, before start-up, between two runs
// and after shut-down too. The input is read as a program of calls.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <functional>

#include "fuzz/machine.h"

using fuzz::machine;
using fuzz::require;

namespace {

constexpr int kMostCalls = 64;
constexpr std::uint32_t kLongestPass = 50; ///< milliseconds
constexpr std::uint32_t kLongestGap = 20;  ///< milliseconds of the engine's pauses
constexpr std::size_t kTextSize = 1024;
constexpr std::size_t kLongestMessage = 4096;
constexpr std::size_t kSongSize = 512;

class Host {
public:
    explicit Host(FuzzedDataProvider& input) : m_input(input) {}

    void call();
    void end();

private:
    std::int16_t number() {
        return m_input.ConsumeBool() ? m_input.ConsumeIntegralInRange<std::int16_t>(0, 15)
                                     : m_input.ConsumeIntegral<std::int16_t>();
    }
    std::int16_t flag() {
        return m_input.ConsumeIntegralInRange<std::int16_t>(0, 2);
    }
    std::uint32_t tick() {
        return m_input.ConsumeBool() ? m_input.ConsumeIntegralInRange<std::uint32_t>(0, 4000)
                                     : m_input.ConsumeIntegral<std::uint32_t>();
    }
    HMIDIOUT handle();
    template <typename Record>
    const Record* records(std::vector<Record>& storage, std::size_t count);

    void startUp();
    void open();
    void scan();
    void transport();
    void plan();
    void map();
    void sendRaw();
    void setChannel();
    void setRoutes();
    void setPatch();
    void setNotes();
    void setPlayer();
    void readTables();
    void sendNow();

    FuzzedDataProvider& m_input;
    HMIDIOUT m_first = nullptr;
    HMIDIOUT m_second = nullptr;
};

HMIDIOUT Host::handle() {
    const std::array<HMIDIOUT, 4> handles = {m_first, m_second, nullptr,
                                             reinterpret_cast<HMIDIOUT>(this)};
    return handles[m_input.ConsumeIntegralInRange<std::size_t>(0, handles.size() - 1)];
}

/// Records with any content, or none at all.
template <typename Record>
const Record* Host::records(std::vector<Record>& storage, std::size_t count) {
    if (m_input.ConsumeIntegralInRange(0, 7) == 0) {
        return nullptr;
    }
    storage.resize(count);
    m_input.ConsumeData(storage.data(), count * sizeof(Record));
    return storage.data();
}

void Host::startUp() {
    std::vector<char> text(kTextSize);
    const std::string written = m_input.ConsumeRandomLengthString(kTextSize);
    std::copy(written.begin(), written.end(), text.begin());
    MMINIT settings{};
    settings.hwnd = m_input.ConsumeBool() ? machine().window() : nullptr;
    settings.timerPeriod = m_input.ConsumeIntegralInRange<std::int16_t>(-1, 40);
    settings.deviceIndex1 = m_input.ConsumeIntegralInRange<std::uint32_t>(0, 33);
    settings.deviceIndex2 = m_input.ConsumeIntegralInRange<std::uint32_t>(0, 33);
    settings.mode1 = m_input.ConsumeIntegral<std::uint8_t>();
    settings.mode2 = m_input.ConsumeIntegral<std::uint8_t>();
    settings.flags = m_input.ConsumeIntegral<std::uint8_t>();
    settings.resetGap = m_input.ConsumeIntegralInRange<std::int16_t>(-2, kLongestGap);
    settings.noChase = m_input.ConsumeIntegralInRange<std::int16_t>(-1, 2);
    settings.lock = m_input.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : machine().lock();
    settings.sendInitText = flag();
    settings.initSysExText = m_input.ConsumeBool() ? text.data() : nullptr;
    settings.firstNoteDelay = m_input.ConsumeIntegralInRange<std::uint32_t>(0, kLongestGap);
    settings.eventGap = m_input.ConsumeIntegralInRange<std::uint32_t>(0, kLongestGap);
    mm_InitEngine(m_input.ConsumeIntegralInRange(0, 31) == 0 ? nullptr : &settings, &m_first,
                  m_input.ConsumeBool() ? &m_second : nullptr);
}

void Host::open() {
    const std::size_t size = m_input.ConsumeIntegralInRange<std::size_t>(0, kSongSize);
    const fuzz::MemoryFile file(m_input.ConsumeBytes<std::uint8_t>(size));
    std::vector<MMCLICK> click;
    const char* const path = m_input.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : file.path();
    mm_Open(handle(), path, m_input.ConsumeIntegral<std::uint16_t>(), flag(), flag(),
            records(click, 1));
}

void Host::scan() {
    const std::size_t size = m_input.ConsumeIntegralInRange<std::size_t>(0, kSongSize);
    const fuzz::MemoryFile file(m_input.ConsumeBytes<std::uint8_t>(size));
    mm_Scan(handle(), file.path());
}

void Host::transport() {
    using Call = void (*)(HMIDIOUT);
    static constexpr std::array<Call, 6> kCalls = {mm_StartSync, mm_ReStartSync, mm_StopSync,
                                                   mm_PauseSync, mm_RewindSync,  mm_Close};
    kCalls[m_input.ConsumeIntegralInRange<std::size_t>(0, kCalls.size() - 1)](handle());
}

void Host::plan() {
    std::vector<MMLOOP> ranges;
    std::vector<MMFADE> fade;
    switch (m_input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        mm_SetLoop(handle(), records(ranges, MM_MAX_LOOPS));
        break;
    case 1:
        mm_SetNextLocator(handle(), tick(), tick());
        break;
    case 2:
        mm_SetFadeIn(handle(), records(fade, 1));
        break;
    case 3:
        mm_SetFadeOut(handle(), records(fade, 1));
        break;
    default: {
        float percent = 0;
        m_input.ConsumeData(&percent, sizeof percent);
        mm_SetTempo(handle(), tick(), percent);
        break;
    }
    }
}

void Host::map() {
    if (m_input.ConsumeBool()) {
        mm_CreateMap(handle(), tick());
    }
    mm_SendMap(handle(), tick());
    require(mm_GetMap(handle()) != nullptr, "there is a map");
}

void Host::sendRaw() {
    machine().allowRawMessages();
    const std::vector<std::uint8_t> message(kLongestMessage,
                                            m_input.ConsumeIntegral<std::uint8_t>());
    switch (m_input.ConsumeIntegralInRange(0, 2)) {
    case 0:
        mm_ShortMessage(handle(), m_input.ConsumeIntegral<std::uint32_t>());
        break;
    case 1:
        mm_LongMessage(handle(), m_input.ConsumeBool() ? message.data() : nullptr,
                       m_input.ConsumeIntegral<std::int16_t>());
        break;
    default:
        mm_Reset(handle());
        break;
    }
}

void Host::setChannel() {
    using Call = void (*)(HMIDIOUT, std::int16_t, std::int16_t);
    static constexpr std::array<Call, 6> kCalls = {mm_SetVolume, mm_SetBalance,  mm_SetReverb,
                                                   mm_SetChorus, mm_SetVelocity, mm_SetNoTranspose};
    kCalls[m_input.ConsumeIntegralInRange<std::size_t>(0, kCalls.size() - 1)](handle(), number(),
                                                                              number());
}

void Host::setRoutes() {
    switch (m_input.ConsumeIntegralInRange(0, 2)) {
    case 0:
        mm_SetChannelDevice(handle(), number(), number(), flag());
        break;
    case 1:
        mm_SetChannelOut(handle(), number(), number(), flag());
        break;
    default:
        // A host may write the table in place.
        mm_GetChannelOut(handle())[m_input.ConsumeIntegralInRange(0, 15)] =
            m_input.ConsumeIntegral<std::uint8_t>();
        break;
    }
}

void Host::setPatch() {
    std::vector<MMPATCH> patch;
    mm_SetPatch(handle(), number(), records(patch, 1));
}

void Host::setNotes() {
    std::vector<MMNOTEPAIR> pairs;
    switch (m_input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        mm_SetReplaceNotes(handle(), number(), records(pairs, 10), flag());
        break;
    case 1:
        mm_SetMute(handle(), number(), number(), flag());
        break;
    case 2:
        mm_SetKeyShift(handle(), number(), number(), flag());
        break;
    case 3:
        mm_SetTranspose(handle(), number(), flag());
        break;
    default:
        mm_SetMasterTranspose(number());
        break;
    }
}

void Host::setPlayer() {
    switch (m_input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        mm_SetOptions(handle(), m_input.ConsumeIntegral<std::uint32_t>());
        break;
    case 1:
        mm_SetNumLyrics(handle(), number());
        break;
    case 2:
        mm_SetNumChords(handle(), number());
        break;
    case 3:
        mm_SetWindow(m_input.ConsumeBool() ? machine().window() : nullptr);
        break;
    default:
        mm_SetWindow(reinterpret_cast<HWND>(this));
        break;
    }
}

void Host::readTables() {
    const HMIDIOUT player = handle();
    std::uint64_t sum = mm_GetTempo(player) + mm_GetTicks(player) + mm_GetLastError();
    for (std::int32_t i = 0; i < mm_GetNumEvents(player); ++i) {
        sum += mm_GetPointerEvents(player, i)->time;
    }
    for (std::int16_t i = 0; i < mm_GetNumLyrics(player); ++i) {
        sum += mm_GetPointerLyrics(player, i)->time;
    }
    for (std::int16_t i = 0; i < mm_GetNumChords(player); ++i) {
        sum += mm_GetPointerChords(player, i)->time;
    }
    for (std::int16_t i = 0; i < mm_GetNumMarkers(player); ++i) {
        sum += mm_GetPointerMarkers(player, i)->time;
    }
    // The sum keeps the reads from being left out.
    volatile const std::uint64_t read = sum;
    static_cast<void>(read);
}

void Host::sendNow() {
    using Call = std::uint32_t (*)(HMIDIOUT, std::int16_t, std::int16_t);
    static constexpr std::array<Call, 4> kCalls = {mm_SetMIDIVolume, mm_SetMIDIBalance,
                                                   mm_SetMIDIReverb, mm_SetMIDIChorus};
    std::vector<std::int16_t> words;
    mm_SetMIDIPatch(handle(), number(), records(words, 3));
    kCalls[m_input.ConsumeIntegralInRange<std::size_t>(0, kCalls.size() - 1)](handle(), number(),
                                                                              number());
}

void Host::call() {
    using Step = void (Host::*)();
    static constexpr std::array<Step, 14> kSteps = {
        &Host::startUp,  &Host::open,      &Host::scan,       &Host::transport, &Host::plan,
        &Host::map,      &Host::sendRaw,   &Host::setChannel, &Host::setRoutes, &Host::setPatch,
        &Host::setNotes, &Host::setPlayer, &Host::readTables, &Host::sendNow};
    const std::size_t choice = m_input.ConsumeIntegralInRange<std::size_t>(0, kSteps.size() + 2);
    if (choice < kSteps.size()) {
        (this->*kSteps[choice])();
    } else if (choice == kSteps.size()) {
        mm_PlayFirstNote(handle());
    } else if (choice == kSteps.size() + 1) {
        machine().pass(m_input.ConsumeIntegralInRange<std::uint32_t>(0, kLongestPass));
    } else if (m_input.ConsumeBool()) {
        mm_EndEngine();
    } else {
        SyncTimer(0, 0, 0, 0, 0);
    }
}

/// Whatever went before, songs can be closed and the engine starts, plays and ends again.
void Host::end() {
    mm_EndEngine();
    machine().allowRawMessages();
    const fuzz::Players players = fuzz::startEngine();
    mm_Close(players.first);
    mm_Close(players.second);
    machine().pass(kLongestPass);
    mm_EndEngine();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    machine().allowRawMessages();
    FuzzedDataProvider input(data, size);
    Host host(input);
    for (int calls = 0; calls < kMostCalls && input.remaining_bytes() > 0; ++calls) {
        host.call();
    }
    host.end();
    return 0;
}
