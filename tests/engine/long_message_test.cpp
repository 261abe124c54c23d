// Long messages, the reset of a player, and the init text.
#include <array>
#include <atomic>
#include <cstring>
#include <thread>

#include "engine/output.h"
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr MMRESULT kNoMemory = 7;
constexpr std::int16_t kLongest = MM_LONG_MESSAGE_SIZE;

} // namespace

class LongMessage : public EngineTest {
protected:
    std::vector<Sent> sendThrough(HMIDIOUT handle, const Bytes& bytes) {
        machine::takeSent();
        mm_LongMessage(handle, bytes.data(), static_cast<std::int16_t>(bytes.size()));
        return machine::takeSent();
    }
};

TEST_F(LongMessage, Of_1_to_4096_bytes_goes_out_whole_and_any_other_length_not_at_all) {
    start();
    for (const std::size_t length : {1u, 2u, 4095u, 4096u}) {
        Bytes message(length, 0x11);
        message.back() = 0xF7;
        const std::vector<Sent> log = sendThrough(mm1, message);
        ASSERT_EQ(log.size(), 1u) << length;
        EXPECT_EQ(log[0].bytes, message);
    }
    const Bytes message(40000);
    for (const std::int16_t length : std::to_array<std::int16_t>({0, -1, -32768, 4097, 32767})) {
        mm_LongMessage(mm1, message.data(), length);
    }
    mm_LongMessage(mm1, nullptr, 3);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(LongMessage, Waits_until_the_output_has_taken_it_and_gives_up_when_it_cannot_be_prepared) {
    start();
    machine::output(0).stillPlaying = 5;
    EXPECT_EQ(sendThrough(mm1, {0xF0, 1, 0xF7}).size(), 1u);
    EXPECT_EQ(machine::output(0).stillPlaying, 0);
    machine::output(0).prepareResult = kNoMemory;
    EXPECT_THAT(sendThrough(mm1, {0xF0, 2, 0xF7}), IsEmpty());
    machine::output(0).prepareResult = 0;
    EXPECT_EQ(sendThrough(mm1, {0xF0, 3, 0xF7}).size(), 1u) << "the header is free again";
}

TEST_F(LongMessage, Without_a_buffer_or_header_is_not_sent) {
    start();
    std::uint8_t* const buffer = MM1.longBuffer;
    MM1.longBuffer = nullptr;
    EXPECT_THAT(sendThrough(mm1, {0xF0, 1, 0xF7}), IsEmpty());
    MM1.longBuffer = buffer;
    MIDIHDR* const header = MM1.longHeader;
    MM1.longHeader = nullptr;
    EXPECT_THAT(sendThrough(mm1, {0xF0, 1, 0xF7}), IsEmpty());
    MM1.longHeader = header;
}

TEST_F(LongMessage, Of_an_unknown_handle_goes_to_player_2s_output_and_not_to_the_handle) {
    outputs = 3;
    start();
    const std::vector<Sent> log = sendThrough(g_devices[2], {0xF0, 1, 0xF7});
    EXPECT_THAT(toText(log), ElementsAre("1: F0 01 F7"));
    mm_EndEngine();
    settings.flags = 0;
    start();
    EXPECT_THAT(sendThrough(g_devices[2], {0xF0, 1, 0xF7}), IsEmpty()) << "player 2 has no output";
}

TEST_F(LongMessage, Of_one_thread_waits_for_another_threads) {
    static std::atomic<int> underWay;
    static std::atomic<int> overlaps;
    underWay = overlaps = 0;
    start();
    machine::output(0).onMessage = [] {
        overlaps += underWay++;
        std::this_thread::yield();
        --underWay;
    };
    const auto sendMany = [this](std::uint8_t value) {
        const Bytes message(kLongest, value);
        for (int i = 0; i < 200; ++i) {
            mm_LongMessage(mm1, message.data(), kLongest);
        }
    };
    std::thread other(sendMany, std::uint8_t{1});
    sendMany(2);
    other.join();
    EXPECT_EQ(overlaps, 0);
    EXPECT_EQ(sent().size(), 400u);
}

TEST_F(LongMessage, Reset_releases_pedals_resets_controllers_and_sends_the_modes_reset) {
    settings.mode2 = MMMODE_XG;
    start();
    mm_Close(mm1);
    mm_Close(mm2);
    mm_SetChannelDevice(mm1, 4, 1, 0);
    mm_SetChannelOut(mm1, 4, 11, 0);
    sent();
    for (const auto& [mode, reset] : {std::pair(0u, "0: F0 7E 7F 09 01 F7"),
                                      std::pair(1u, "0: F0 41 10 42 12 40 00 7F 00 41 F7"),
                                      std::pair(2u, "0: F0 43 10 4C 00 00 7E 00 F7"),
                                      std::pair(65535u, "0: F0 7E 7F 09 01 F7")}) {
        MM1.mode = mode;
        std::vector<std::string> expected;
        for (const int controller : {0x40, 0x42, 0x79}) {
            auto lines = sweep(controller);
            lines[4].replace(0, 5, "1: BB");
            expected.insert(expected.end(), lines.begin(), lines.end());
        }
        expected.emplace_back(reset);
        mm_Reset(mm1);
        EXPECT_EQ(sent(), expected) << mode;
    }
    mm_Reset(mm2);
    EXPECT_EQ(sent().back(), "1: F0 43 10 4C 00 00 7E 00 F7");
}

class InitText : public EngineTest {
protected:
    /// Starts the engine with a text and answers what it makes player 1 send.
    std::vector<std::string> messagesOf(std::string_view text) {
        std::array<char, MMINIT_TEXT_SIZE> buffer{};
        std::memcpy(buffer.data(), text.data(), std::min(text.size(), buffer.size()));
        settings.initSysExText = buffer.data();
        start();
        buffer.fill('5'); // the text was copied
        sent();
        SendInitSysEx(MM1);
        std::vector<std::string> lines = sent();
        mm_EndEngine();
        return lines;
    }
};

TEST_F(InitText, Has_one_message_a_line_whatever_ends_the_line) {
    const auto expected = ElementsAre("0: F0 7E 7F 09 01 F7", "0: F0 43 10 4C 00 00 7E 00 F7");
    EXPECT_THAT(messagesOf("F0 7E 7F 09 01 F7\r\nF0 43 10 4C 00 00 7E 00 F7"), expected);
    EXPECT_THAT(messagesOf("F07E7F0901F7\r\nF043104C00007E00F7"), expected);
    EXPECT_THAT(messagesOf("F07E7F0901F7\nf043104c00007e00f7\n"), expected);
    EXPECT_THAT(messagesOf("  F 07E7F0901 F7  \rF043104C00007E00F7\r"), expected);
    EXPECT_THAT(messagesOf("\r\n\n\r \nF07E7F0901F7\n\r\n\rF043104C00007E00F7\r\r"), expected);
}

TEST_F(InitText, Drops_an_odd_digit_and_reads_other_characters_as_a_number_reader_would) {
    EXPECT_THAT(messagesOf("F0 7E 7F 09 01 F"), ElementsAre("0: F0 7E 7F 09 01"));
    EXPECT_THAT(messagesOf("F0zz1g-1+5\t70xx0F7"), ElementsAre("0: F0 00 01 FF 05 07 00 00 F7"));
    EXPECT_THAT(messagesOf("F"), IsEmpty()) << "no whole byte";
}

TEST_F(InitText, That_is_empty_or_missing_sends_nothing) {
    EXPECT_THAT(messagesOf(""), IsEmpty());
    EXPECT_THAT(messagesOf("\r\n   \n\n\r"), IsEmpty());
    settings.initSysExText = nullptr;
    start();
    SendInitSysEx(MM1);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(InitText, Without_an_end_is_cut_after_1023_characters) {
    const std::vector<std::string> lines = messagesOf(std::string(MMINIT_TEXT_SIZE, '1'));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].size(), std::string("0:").size() + 511 * std::string(" 11").size());
}
