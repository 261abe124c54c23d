// Start-up and shut-down of the DLL: outputs, failures of the system, and the host's lock.
#include <algorithm>
#include <cstring>
#include <memory>

#include "tests/windows/dll_test.h"

namespace {

constexpr int kOutputs = 3;
constexpr int kEngineOutputs = 32;

} // namespace

class StartUp : public DllTest {
protected:
    /// A count of all outputs together.
    static int total(std::atomic<int> OutputDouble::*count) {
        int sum = 0;
        for (int i = 0; i < kOutputs; ++i) {
            sum += machine::output(i).*count;
        }
        return sum;
    }

    /// Fails a start-up at one call of a system function, then ends it and starts again.
    void failAt(const char* function, int call, DWORD error) {
        SCOPED_TRACE(std::string(function) + " " + std::to_string(call));
        load(kOutputs);
        for (const char* counted : {"GlobalAlloc", "GlobalFree", "timeSetEvent", "timeKillEvent"}) {
            machine::failCall(counted, 0);
        }
        machine::failCall(function, call);
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(dll.mm_GetLastError(), error);
        EXPECT_EQ(total(&OutputDouble::opened), kOutputs);
        dll.mm_EndEngine();
        const bool noBlock = function == std::string("GlobalAlloc");
        const bool noTimer = function == std::string("timeSetEvent");
        EXPECT_EQ(total(&OutputDouble::closed), kOutputs);
        EXPECT_EQ(machine::callCount("GlobalFree"),
                  machine::callCount("GlobalAlloc") - (noBlock ? 1 : 0));
        EXPECT_EQ(machine::callCount("timeKillEvent"),
                  machine::callCount("timeSetEvent") - (noTimer ? 1 : 0));

        ASSERT_EQ(start(), 1);
        play(mm1, evenNotes(1, 12));
        EXPECT_TRUE(window.waitFor(MMN_END));
        dll.mm_EndEngine();
        EXPECT_EQ(total(&OutputDouble::closed), 2 * kOutputs);
    }
};

TEST_F(StartUp, Without_an_output_plays_in_silence) {
    load(0);
    ASSERT_EQ(start(), 1);
    EXPECT_EQ(mm1, nullptr);
    EXPECT_EQ(mm2, nullptr);
    play(mm1, evenNotes(4, 24));
    EXPECT_TRUE(window.waitFor(MMN_END));
    EXPECT_THAT(machine::takeSent(), ::testing::IsEmpty());
}

TEST_F(StartUp, Opens_32_of_40_outputs_and_shut_down_closes_them) {
    load(machine::kMaxOutputs);
    settings.deviceIndex1 = kEngineOutputs - 1;
    settings.deviceIndex2 = kEngineOutputs;
    ASSERT_EQ(start(), 1);
    EXPECT_NE(mm1, nullptr);
    EXPECT_EQ(mm2, nullptr);
    dll.mm_EndEngine();
    for (int i = 0; i < machine::kMaxOutputs; ++i) {
        const int times = i < kEngineOutputs ? 1 : 0;
        EXPECT_EQ(machine::output(i).opened, times) << i;
        EXPECT_EQ(machine::output(i).resets, times) << i;
        EXPECT_EQ(machine::output(i).closed, times) << i;
    }
}

TEST_F(StartUp, That_fails_at_any_step_is_reported_and_cleaned_up) {
    for (const char* function : {"timeGetDevCaps", "timeBeginPeriod", "timeSetEvent"}) {
        failAt(function, 1, ENGINE_ERR_TIMER);
    }
    for (int call = 1; call <= 4; ++call) {
        failAt("GlobalAlloc", call, ENGINE_ERR_ALLOC);
        failAt("GlobalLock", call, ENGINE_ERR_LOCK);
    }
}

// A callback may be on its way when the host deletes its lock; it must not touch what lay there.
TEST_F(StartUp, Leaves_the_host_s_lock_alone_after_shut_down) {
    constexpr int kRounds = 300;
    constexpr char kDead = 0x5D;
    std::vector<std::unique_ptr<CRITICAL_SECTION>> graveyard;
    load();
    settings.timerPeriod = 1;
    const std::string song = evenNotes(100, 96).write();
    for (int round = 0; round < kRounds; ++round) {
        CRITICAL_SECTION& host = *graveyard.emplace_back(std::make_unique<CRITICAL_SECTION>());
        InitializeCriticalSection(&host);
        settings.lock = &host;
        ASSERT_EQ(start(), 1);
        ASSERT_EQ(dll.mm_Open(mm1, song.c_str(), MMOPT_NOTES, 0, 0, nullptr), 1);
        dll.mm_StartSync(mm1);
        // Meets the timer at work, and in some rounds inside a period.
        const std::uint32_t until = 1 + static_cast<std::uint32_t>(round) % 5;
        while (dll.mm_GetTicks(mm1) < until) {
            SwitchToThread();
        }
        dll.mm_Close(mm1);
        dll.mm_EndEngine();
        DeleteCriticalSection(&host);
        std::memset(&host, kDead, sizeof host);
    }
    for (const auto& host : graveyard) {
        const auto* bytes = reinterpret_cast<const char*>(host.get());
        EXPECT_EQ(std::count(bytes, bytes + sizeof(CRITICAL_SECTION), kDead),
                  static_cast<int>(sizeof(CRITICAL_SECTION)));
    }
}
