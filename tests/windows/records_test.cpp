// The binary layout: records as a host in any language reads and writes them, by byte offsets.
#include <array>
#include <cstring>

#include "tests/windows/dll_test.h"

namespace {

template <typename Value>
Value at(const void* record, std::size_t offset) {
    Value value;
    std::memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

template <typename Value>
void put(void* record, std::size_t offset, Value value) {
    std::memcpy(static_cast<char*>(record) + offset, &value, sizeof value);
}

const void* address(const void* record, std::size_t offset) {
    return static_cast<const char*>(record) + offset;
}

} // namespace

class Records : public DllTest {
protected:
    /// Start-up from 44 bytes that were filled by offset.
    void startFromBytes() {
        std::array<char, 44> bytes{};
        put<HWND>(bytes.data(), 0x00, window.handle());
        put<std::int16_t>(bytes.data(), 0x04, kPeriod);
        put<std::uint32_t>(bytes.data(), 0x08, 1);
        put<std::uint32_t>(bytes.data(), 0x0C, 0);
        put<std::uint16_t>(bytes.data(), 0x10, MMMODE_GS);
        put<std::uint16_t>(bytes.data(), 0x12, MMMODE_XG);
        put<std::uint16_t>(bytes.data(), 0x14, MMINIT_SECONDPLAYER);
        put<CRITICAL_SECTION*>(bytes.data(), 0x1A, &lock);
        ASSERT_EQ(dll.mm_InitEngine(reinterpret_cast<const MMINIT*>(bytes.data()), &mm1, &mm2), 1);
    }

    /// Opens a song with a metronome from 22 bytes.
    void open(HMIDIOUT player, int division, std::uint16_t options) {
        SongBuilder song(division);
        song.track().marker("Verse").at(48).program(0, 5).noteOn(0, 60).at(480000).noteOff(0, 60);
        std::array<char, 22> click{};
        put<std::int16_t>(click.data(), 2, 1);
        put<std::uint16_t>(click.data(), 6, 76);
        put<std::uint16_t>(click.data(), 12, 90);
        ASSERT_EQ(dll.mm_Open(player, song.write().c_str(), options, 0, 0,
                              reinterpret_cast<const MMCLICK*>(click.data())),
                  1);
    }

    /// The fields of a player against the getters; the host's lock keeps both players still.
    void expectFields(const void* record, HMIDIOUT player) {
        EnterCriticalSection(&lock);
        EXPECT_EQ(dll.mm_GetMM(player), record);
        EXPECT_EQ(at<HMIDIOUT>(record, 0x000), player);
        EXPECT_EQ(at<std::int16_t>(record, 0x010), dll.mm_GetUnits(player));
        EXPECT_EQ(address(record, 0x012), dll.mm_GetInfo(player));
        EXPECT_EQ(at<std::int32_t>(record, 0x07E), dll.mm_GetNumEvents(player));
        EXPECT_EQ(at<void*>(record, 0x086), dll.mm_GetPointerEvents(player, 0));
        EXPECT_EQ(at<void*>(record, 0x38A), dll.mm_GetPointerLyrics(player, 0));
        EXPECT_EQ(at<void*>(record, 0x39A), dll.mm_GetPointerChords(player, 0));
        EXPECT_EQ(at<std::uint32_t>(record, 0x3B2), dll.mm_GetTicks(player));
        EXPECT_EQ(at<std::uint32_t>(record, 0x3B6), dll.mm_GetTempo(player) * 256);
        EXPECT_EQ(address(record, 0x478), dll.mm_GetMap(player));
        EXPECT_EQ(at<void*>(record, 0xA34), dll.mm_GetPointerMarkers(player, 0));
        EXPECT_EQ(address(record, 0xA3E), dll.mm_GetChannelDevice(player));
        EXPECT_EQ(address(record, 0xA7E), dll.mm_GetChannelOut(player));
        LeaveCriticalSection(&lock);
    }
};

TEST_F(Records, Of_both_players_lie_as_the_bindings_read_them) {
    load();
    startFromBytes();
    const void* const record1 = dll.mm_GetMM1();
    const void* const record2 = dll.mm_GetMM2();
    EXPECT_GE(std::abs(static_cast<const char*>(record2) - static_cast<const char*>(record1)),
              2782);
    open(mm1, 480, MMOPT_NOTES);
    open(mm2, 96, MMOPT_TEMPO);
    EXPECT_EQ(at<std::uint32_t>(record1, 0x004), 1U);
    EXPECT_EQ(at<std::uint32_t>(record2, 0x004), 2U);
    EXPECT_EQ(at<std::uint32_t>(record1, 0x008), 0x01U);
    EXPECT_EQ(at<std::uint32_t>(record2, 0x008), 0x40U);
    EXPECT_EQ(at<std::int16_t>(record1, 0x010), 480);
    EXPECT_EQ(at<std::int16_t>(record2, 0x010), 96);
    for (const void* record : {record1, record2}) {
        const HMIDIOUT player = record == record1 ? mm1 : mm2;
        expectFields(record, player);
        EXPECT_EQ(at<std::int32_t>(record, 0x07E), 3);
        EXPECT_EQ(at<std::uint16_t>(record, 0x3C2), 0);
        EXPECT_EQ(at<HMIDIOUT>(record, 0xA3E + 15 * 4), player);
        EXPECT_EQ(at<std::uint8_t>(record, 0xA7E + 15), 15);
        EXPECT_EQ(at<std::int16_t>(record, 0xA8E + 2), 1);
        EXPECT_EQ(at<std::uint16_t>(record, 0xA8E + 6), 76);
        EXPECT_EQ(at<std::uint16_t>(record, 0xA8E + 12), 90);
    }
}

TEST_F(Records, Show_what_the_host_stores_and_scans) {
    load();
    startFromBytes();
    const void* const record = dll.mm_GetMM(mm2);
    SongBuilder song;
    song.track().meta(0x03, "Evening").noteOn(0, 60).at(480).noteOff(0, 60);
    ASSERT_EQ(dll.mm_Scan(mm2, song.write().c_str()), 1);
    EXPECT_STREQ(static_cast<const char*>(address(record, 0x012)), "Evening");
    EXPECT_EQ(at<std::uint32_t>(record, 0x012 + 66), 500000U);

    open(mm2, 480, 0);
    std::array<char, 20> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs[i] = static_cast<char>(i + 40);
    }
    dll.mm_SetReplaceNotes(mm2, 9, reinterpret_cast<const MMNOTEPAIR*>(pairs.data()), 0);
    EXPECT_EQ(std::memcmp(address(record, 0xACA), pairs.data(), pairs.size()), 0);

    std::array<char, 180> ranges{};
    for (std::size_t i = 0; i < 10; ++i) {
        put<std::uint32_t>(ranges.data(), 18 * i + 2, i < 2 ? 100 * i : MMLOOP_UNUSED);
        put<std::uint32_t>(ranges.data(), 18 * i + 6, 100 * i + 50);
        put<std::int16_t>(ranges.data(), 18 * i + 14, 3);
    }
    dll.mm_SetLoop(mm2, reinterpret_cast<const MMLOOP*>(ranges.data()));
    EXPECT_EQ(at<std::uint32_t>(record, 0x3C4 + 18 + 2), 100U);
    EXPECT_EQ(at<std::uint32_t>(record, 0x3C4 + 18 + 6), 150U);
    EXPECT_EQ(at<std::int16_t>(record, 0x3C4 + 18 + 16), 3);
    EXPECT_EQ(at<std::int16_t>(record, 0xA30), 2);

    dll.mm_CreateMap(mm2, 480);
    EXPECT_EQ(at<std::uint8_t>(record, 0x478 + 12 + MMSLOT_PROGRAM), 5);
    EXPECT_EQ(at<std::uint8_t>(record, 0x478 + 12 + 90 + MMSLOT_PROGRAM), 0xFF);

    const std::uint8_t message[] = {0xF0, 0x7D, 0x11, 0xF7};
    dll.mm_LongMessage(mm2, message, sizeof message);
    EXPECT_EQ(std::memcmp(at<void*>(record, 0xABE), message, sizeof message), 0);
    EXPECT_THAT(toText(machine::takeSent()), ::testing::Contains("0: F0 7D 11 F7"));
}

TEST_F(Records, Agree_with_the_getters_while_both_players_play) {
    load();
    startFromBytes();
    open(mm1, 480, MMOPT_NOTES);
    open(mm2, 96, MMOPT_NOTES);
    dll.mm_StartSync(mm1);
    dll.mm_StartSync(mm2);
    ASSERT_TRUE(window.waitFor(MMN_NOTEON, 2));
    for (const HMIDIOUT player : {mm1, mm2}) {
        const void* const record = dll.mm_GetMM(player);
        expectFields(record, player);
        EXPECT_GE(at<std::uint32_t>(record, 0x3B2), 48U);
        EXPECT_NE(at<std::uint16_t>(record, 0x3C2), 0);
    }
}
