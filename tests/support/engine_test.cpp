// The fixture of the engine's tests.
#include "tests/support/engine_test.h"

#include <cstdio>

#include "song/song.h"

namespace {

constexpr int kPeriod = 10;           ///< milliseconds
constexpr int kLongestSong = 1000000; ///< periods

} // namespace

EngineTest::EngineTest() {
    InitializeCriticalSection(&lock);
    g_lastError.store(0);
    settings.timerPeriod = kPeriod;
    settings.deviceIndex1 = 0;
    settings.deviceIndex2 = 1;
    settings.flags = MMINIT_SECONDPLAYER | MMINIT_SYSEXSTORE;
    settings.lock = &lock;
}

EngineTest::~EngineTest() {
    if (g_engineState.load() == EngineState::Running) {
        unloadSong(MM1);
        unloadSong(MM2);
    }
    mm_EndEngine();
    if (machineReady_) {
        machine::tearDown();
    }
    DeleteCriticalSection(&lock);
    removeWrittenFiles();
}

std::int16_t EngineTest::tryStart() {
    if (!machineReady_) {
        realTime ? machine::setUpRealTime(outputs) : machine::setUp(outputs);
        machineReady_ = true;
    }
    settings.hwnd = machine::window();
    return mm_InitEngine(&settings, &mm1, &mm2);
}

void EngineTest::start() {
    ASSERT_EQ(tryStart(), 1) << "error " << mm_GetLastError();
}

std::int16_t EngineTest::open(const SongBuilder& song, int options, int endOnBeat) {
    return mm_Open(mm1, song.write().c_str(), static_cast<std::uint16_t>(options), 0,
                   static_cast<std::int16_t>(endOnBeat), nullptr);
}

std::int16_t EngineTest::openBytes(const Bytes& bytes, int options) {
    return mm_Open(mm1, writeFile(bytes).c_str(), static_cast<std::uint16_t>(options), 0, 0,
                   nullptr);
}

void EngineTest::play(const SongBuilder& song, int options, int endOnBeat) {
    ASSERT_EQ(open(song, options, endOnBeat), 1) << "error " << mm_GetLastError();
    mm_SetLoop(mm1, nullptr);
    takeLog();
    posted();
    mm_StartSync(mm1);
}

void EngineTest::ticks(int count) {
    machine::passPeriods(count, g_timerPeriod);
}

void EngineTest::playToEnd() {
    for (int i = 0; i < kLongestSong && MM1.playing != 0; ++i) {
        ticks(1);
    }
    ASSERT_EQ(MM1.playing, 0);
}

std::vector<Sent> EngineTest::takeLog() {
    std::vector<Sent> log = machine::takeSent();
    history_.insert(history_.end(), log.begin(), log.end());
    return log;
}

std::vector<std::string> EngineTest::sent(int kind) {
    std::vector<std::string> lines;
    for (const Sent& message : takeLog()) {
        if ((message.bytes[0] & 0xF0) == kind) {
            lines.push_back(toText(message));
        }
    }
    return lines;
}

std::vector<Posted> EngineTest::posted(UINT message) {
    std::vector<Posted> matching;
    for (const Posted& one : machine::takePosted()) {
        if (one.message == message) {
            matching.push_back(one);
        }
    }
    return matching;
}

const std::vector<Sent>& EngineTest::history() {
    takeLog();
    return history_;
}

std::vector<std::string> sweep(int controller, int output) {
    std::vector<std::string> lines;
    for (int channel = 0; channel < 16; ++channel) {
        const auto status = static_cast<std::uint8_t>(0xB0 | channel);
        lines.push_back(
            toText(Sent{output, 0, {status, static_cast<std::uint8_t>(controller), 0}}));
    }
    return lines;
}

std::vector<std::string> eventLines(const MIDIOUT& player) {
    std::vector<std::string> lines;
    for (std::int32_t i = 0; i < player.eventCount; ++i) {
        const MMEVENT& event = player.events[i];
        char text[40];
        std::snprintf(text, sizeof text, "%u %02X %02X %02X %02X", event.time, event.kind,
                      event.byte1, event.byte2, event.byte3);
        lines.emplace_back(text);
    }
    return lines;
}
