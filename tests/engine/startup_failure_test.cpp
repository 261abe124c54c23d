// A start-up that fails at each of its steps: what it reports and leaves, and that a later one works.
#include "tests/support/engine_test.h"

namespace {

struct Step {
    std::string function;
    int call;
    std::uint32_t error;
};

constexpr std::uint8_t kMessage[] = {0xF0, 0x01, 0xF7};

} // namespace

class FailedStartUp : public EngineTest {
protected:
    /// Runs the engine once, so that the records hold addresses of freed blocks, then fails a start-up.
    void failAt(const Step& step) {
        start();
        mm_EndEngine();
        for (const char* name : {"GlobalAlloc", "GlobalFree", "timeKillEvent", "timeEndPeriod"}) {
            machine::failCall(name, 0);
        }
        machine::failCall(step.function.c_str(), step.call);
        const HMIDIOUT untouched = reinterpret_cast<HMIDIOUT>(this);
        mm1 = mm2 = untouched;
        EXPECT_EQ(tryStart(), 0);
        EXPECT_EQ(mm_GetLastError(), step.error);
        EXPECT_EQ(mm1, untouched);
        EXPECT_EQ(mm2, untouched);
    }

    /// Both players take long messages.
    void expectWorking() {
        sent();
        mm_LongMessage(mm1, kMessage, sizeof kMessage);
        mm_LongMessage(mm2, kMessage, sizeof kMessage);
        EXPECT_THAT(sent(), ::testing::ElementsAre("0: F0 01 F7", "1: F0 01 F7"));
    }
};

class EveryFailedStep : public FailedStartUp, public ::testing::WithParamInterface<Step> {};

TEST_P(EveryFailedStep, Is_ended_by_shut_down_with_nothing_leaked_or_freed_twice) {
    failAt(GetParam());
    machine::passPeriods(3, 10); // a timer that runs already finds nothing to do
    mm_LongMessage(MM1.hmo, kMessage, sizeof kMessage);
    EXPECT_THAT(sent(), ::testing::IsEmpty());
    mm_EndEngine();
    mm_EndEngine();
    const bool allocationFailed = GetParam().function == "GlobalAlloc";
    const int blocks = machine::callCount("GlobalAlloc") - (allocationFailed ? 1 : 0);
    EXPECT_EQ(machine::callCount("GlobalFree"), blocks);
    const int timers = GetParam().error == ENGINE_ERR_TIMER ? 0 : 1;
    EXPECT_EQ(machine::callCount("timeKillEvent"), timers);
    EXPECT_EQ(machine::callCount("timeEndPeriod"), timers);
    EXPECT_EQ(machine::output(0).closed, 2);
    EXPECT_EQ(machine::output(1).closed, 2);
    start();
    expectWorking();
}

INSTANTIATE_TEST_SUITE_P(
    StartUp, EveryFailedStep,
    ::testing::Values(
        Step{"timeGetDevCaps", 1, ENGINE_ERR_TIMER}, Step{"timeBeginPeriod", 1, ENGINE_ERR_TIMER},
        Step{"timeSetEvent", 1, ENGINE_ERR_TIMER}, Step{"GlobalAlloc", 1, ENGINE_ERR_ALLOC},
        Step{"GlobalLock", 1, ENGINE_ERR_LOCK}, Step{"GlobalAlloc", 2, ENGINE_ERR_ALLOC},
        Step{"GlobalLock", 2, ENGINE_ERR_LOCK}, Step{"GlobalAlloc", 3, ENGINE_ERR_ALLOC},
        Step{"GlobalLock", 3, ENGINE_ERR_LOCK}, Step{"GlobalAlloc", 4, ENGINE_ERR_ALLOC},
        Step{"GlobalLock", 4, ENGINE_ERR_LOCK}),
    [](const auto& step) { return step.param.function + std::to_string(step.param.call); });

TEST_F(FailedStartUp, Is_cleaned_up_by_the_next_start_up) {
    failAt({"GlobalLock", 4, ENGINE_ERR_LOCK});
    start();
    EXPECT_EQ(machine::output(0).opened, 3);
    EXPECT_EQ(machine::output(0).closed, 2);
    EXPECT_EQ(machine::callCount("GlobalFree"), 4);
    expectWorking();
}
