// Every export called at the wrong time and with wild arguments.
#include <array>
#include <cstring>
#include <limits>

#include "tests/support/engine_test.h"

using ::testing::IsEmpty;

namespace {

struct Arguments {
    HMIDIOUT handle;
    std::int16_t number; ///< wherever a number goes
    bool records;        ///< records to read from, or null
    const char* fileName;
    HWND window;
};

void setChannels(const Arguments& with) {
    static constexpr MMPATCH kPatch{300, -1, 5, 1};
    static constexpr MMNOTEPAIR kPairs[10] = {};
    static constexpr std::int16_t kWords[3] = {};
    const std::int16_t n = with.number;
    mm_SetChannelDevice(with.handle, n, n, 1);
    mm_SetChannelOut(with.handle, n, n, 1);
    mm_SetPatch(with.handle, n, with.records ? &kPatch : nullptr);
    mm_SetReplaceNotes(with.handle, n, with.records ? kPairs : nullptr, 1);
    for (auto* const setter : {mm_SetVolume, mm_SetBalance, mm_SetReverb, mm_SetChorus,
                               mm_SetVelocity, mm_SetNoTranspose}) {
        setter(with.handle, n, n);
    }
    mm_SetMute(with.handle, n, 1, 1);
    mm_SetKeyShift(with.handle, n, n, 1);
    mm_SetTranspose(with.handle, n, 1);
    mm_SetMasterTranspose(n);
    mm_SetMIDIPatch(with.handle, n, with.records ? kWords : nullptr);
    for (auto* const sender :
         {mm_SetMIDIVolume, mm_SetMIDIBalance, mm_SetMIDIReverb, mm_SetMIDIChorus}) {
        sender(with.handle, n, n);
    }
}

void setPlan(const Arguments& with) {
    static constexpr MMLOOP kRanges[10] = {};
    static constexpr MMFADE kFade = {};
    const auto wide = static_cast<std::uint32_t>(with.number);
    mm_SetTempo(with.handle, wide, std::numeric_limits<float>::quiet_NaN());
    mm_SetTempo(with.handle, wide, with.number);
    mm_SetLoop(with.handle, with.records ? kRanges : nullptr);
    mm_SetNextLocator(with.handle, wide, wide);
    mm_SetFadeIn(with.handle, with.records ? &kFade : nullptr);
    mm_SetFadeOut(with.handle, with.records ? &kFade : nullptr);
    mm_CreateMap(with.handle, wide);
    mm_SendMap(with.handle, wide);
    for (auto* const move :
         {mm_StartSync, mm_ReStartSync, mm_PauseSync, mm_StopSync, mm_RewindSync}) {
        move(with.handle);
    }
}

void readTables(const Arguments& with) {
    mm_SetNumLyrics(with.handle, with.number);
    mm_SetNumChords(with.handle, with.number);
    EXPECT_EQ(mm_GetNumLyrics(with.handle) + mm_GetNumChords(with.handle), 0);
    EXPECT_EQ(mm_GetNumEvents(with.handle) + mm_GetNumMarkers(with.handle), 0);
    EXPECT_EQ(mm_GetPointerEvents(with.handle, with.number), nullptr);
    EXPECT_EQ(mm_GetPointerLyrics(with.handle, with.number), nullptr);
    EXPECT_EQ(mm_GetPointerChords(with.handle, with.number), nullptr);
    EXPECT_EQ(mm_GetPointerMarkers(with.handle, with.number), nullptr);
    EXPECT_EQ(mm_GetTicks(with.handle) + static_cast<unsigned>(mm_GetUnits(with.handle)), 0u);
    EXPECT_EQ(mm_GetInfo(with.handle), &mm_GetMM(with.handle)->info);
    EXPECT_EQ(mm_GetMap(with.handle), &mm_GetMM(with.handle)->map);
}

/// Every export that acts, on a player without a song.
void callEverything(const Arguments& with) {
    readTables(with);
    setChannels(with);
    mm_SetOptions(with.handle, static_cast<std::uint32_t>(with.number));
    mm_SetWindow(with.window);
    setPlan(with);
    EXPECT_NE(mm_ShortMessage(nullptr, 0x90), 0u);
    mm_LongMessage(with.handle, nullptr, with.number);
    mm_Reset(with.handle);
    EXPECT_EQ(mm_PlayFirstNote(with.handle), 0);
    EXPECT_EQ(mm_Open(with.handle, with.fileName, 0, 0, 0, nullptr), 0);
    EXPECT_EQ(mm_Scan(with.handle, with.fileName), 0);
    mm_Close(with.handle);
    SyncTimer(0, 0, 0, 0, 0);
}

/// What no call may change outside a run.
std::string state() {
    std::string bytes(2 * sizeof(MIDIOUT), '\0');
    std::memcpy(bytes.data(), &MM1, sizeof MM1);
    std::memcpy(bytes.data() + sizeof MM1, &MM2, sizeof MM2);
    for (const std::uint32_t value :
         {mm_GetLastError(), g_busy.load(), static_cast<std::uint32_t>(g_masterTranspose)}) {
        bytes += " " + std::to_string(value);
    }
    return bytes;
}

} // namespace

class WildCalls : public EngineTest {
protected:
    void callAll(const char* fileName, HWND window) {
        for (const int number : {-32768, -1, 0, 16, 40, 32767}) {
            for (const HMIDIOUT handle : {mm1, mm2, reinterpret_cast<HMIDIOUT>(this)}) {
                for (const bool records : {false, true}) {
                    callEverything(
                        {handle, static_cast<std::int16_t>(number), records, fileName, window});
                }
            }
        }
    }
};

TEST_F(WildCalls, Outside_a_run_return_at_once_without_effect) {
    SongBuilder song;
    song.track().note(0, 60, 10);
    const std::string file = song.write();
    const auto expectNoEffect = [&](const char* when) {
        SCOPED_TRACE(when);
        const std::string before = state();
        const HWND window = mm_GetWindow();
        callAll(file.c_str(), reinterpret_cast<HWND>(this));
        EXPECT_TRUE(state() == before);
        EXPECT_EQ(mm_GetWindow(), window);
    };
    sent();
    expectNoEffect("before start-up");
    start();
    mm_Close(mm1);
    mm_Close(mm2);
    mm_EndEngine();
    sent();
    expectNoEffect("after shut-down");
    EXPECT_THAT(sent(), IsEmpty());
    machine::failCall("GlobalAlloc", 3);
    ASSERT_EQ(tryStart(), 0);
    expectNoEffect("after a failed start-up");
}

TEST_F(WildCalls, With_wild_arguments_leave_the_engine_working_and_send_nothing_malformed) {
    start();
    mm_Close(mm1);
    mm_Close(mm2);
    callAll(nullptr, nullptr);
    EXPECT_EQ(mm_GetLastError(), static_cast<std::uint32_t>(ENGINE_ERR_FILE));
    EXPECT_EQ(g_busy, 0u);
    for (const Sent& message : history()) {
        ASSERT_GE(message.bytes[0], 0x80) << toText(message);
        for (std::size_t i = 1; message.bytes[0] != 0xF0 && i < message.bytes.size(); ++i) {
            ASSERT_LT(message.bytes[i], 0x80) << toText(message);
        }
    }
    mm_SetMasterTranspose(0);
    SongBuilder song;
    song.track().note(2, 60, 10);
    play(song);
    playToEnd();
    EXPECT_THAT(sent(0x90), ::testing::ElementsAre("0: 92 3C 64"));
}
