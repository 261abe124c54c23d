// The stored channel settings and the immediate senders: what they store, what they send, in which order.
#include <array>
#include <cstring>

#include "tests/support/engine_test.h"

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr MMRESULT kNotReady = 67;

std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// What the engine's state was while each message was under way.
std::vector<int> seen;

} // namespace

class ChannelSettings : public EngineTest {
protected:
    void startRouted() {
        start();
        mm_Close(mm1);
        mm_Close(mm2);
        mm_SetChannelOut(mm1, 3, 12, 0);
        sent();
        seen.clear();
    }
};

TEST_F(ChannelSettings, Setters_store_any_value_in_their_own_place_and_send_nothing) {
    using Setter = void(CORVMO_CALL*)(HMIDIOUT, std::int16_t, std::int16_t);
    startRouted();
    const std::pair<Setter, std::size_t> setters[] = {
        {mm_SetVolume, offsetof(MIDIOUT, volume)},
        {mm_SetBalance, offsetof(MIDIOUT, balance)},
        {mm_SetReverb, offsetof(MIDIOUT, reverb)},
        {mm_SetChorus, offsetof(MIDIOUT, chorus)},
        {mm_SetVelocity, offsetof(MIDIOUT, velocity)},
        {mm_SetNoTranspose, offsetof(MIDIOUT, noTranspose)}};
    MIDIOUT expected = MM1;
    auto* const bytes = reinterpret_cast<std::uint8_t*>(&expected);
    std::int16_t value = -32768;
    for (const auto& [setter, table] : setters) {
        for (const std::size_t channel : {0u, 15u}) {
            setter(mm1, static_cast<std::int16_t>(channel), ++value);
            std::memcpy(bytes + table + channel * sizeof value, &value, sizeof value);
        }
        setter(mm1, 16, 1);
        setter(mm1, -1, 1);
    }
    const MMPATCH patch{1, -2, 300, 4};
    mm_SetPatch(mm1, 5, &patch);
    mm_SetPatch(mm1, 16, &patch);
    mm_SetPatch(mm1, 5, nullptr);
    expected.patch[5] = patch;
    EXPECT_EQ(std::memcmp(&expected, &MM1, sizeof MM1), 0);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(ChannelSettings, Note_replacements_are_stored_whole_and_silence_the_channel_if_asked) {
    startRouted();
    MMNOTEPAIR pairs[10];
    std::memset(pairs, 0x31, sizeof pairs);
    mm_SetReplaceNotes(mm1, 2, pairs, 0);
    EXPECT_THAT(sent(), IsEmpty());
    mm_SetReplaceNotes(mm1, 3, pairs, 1);
    EXPECT_THAT(sent(), ElementsAre("0: BC 78 00"));
    mm_SetReplaceNotes(mm1, 3, nullptr, 1);
    EXPECT_EQ(std::memcmp(MM1.replaceNotes, pairs, sizeof pairs), 0);
    std::memset(pairs, -1, sizeof pairs);
    mm_SetReplaceNotes(mm1, -1, pairs, 1);
    EXPECT_EQ(+MM1.replaceNotes[9].to, 0x31);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(ChannelSettings, Mute_silences_after_storing_and_only_when_value_and_switch_are_1) {
    startRouted();
    machine::output(0).onMessage = [] { seen.push_back(MM1.mute[3]); };
    mm_SetMute(mm1, 3, 1, 1);
    EXPECT_THAT(sent(), ElementsAre("0: BC 78 00"));
    EXPECT_THAT(seen, ElementsAre(1));
    mm_SetMute(mm1, 3, 0, 1);
    EXPECT_EQ(+MM1.mute[3], 0);
    mm_SetMute(mm1, 3, 2, 1);
    EXPECT_EQ(+MM1.mute[3], 2);
    mm_SetMute(mm1, 3, 1, 2);
    EXPECT_EQ(+MM1.mute[3], 1);
    mm_SetMute(mm1, 16, 1, 1);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(ChannelSettings, Transpositions_silence_before_they_store_and_hold_the_timer_off) {
    startRouted();
    machine::output(0).onMessage = [] {
        seen.push_back(MM1.keyShift[3] + MM1.transpose + g_masterTranspose);
        seen.push_back(static_cast<int>(g_busy) - 1);
    };
    mm_SetKeyShift(mm1, 3, -5, 2);
    mm_SetTranspose(mm1, 12, 2);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(+MM1.keyShift[3], -5);
    EXPECT_EQ(+MM1.transpose, 12);
    mm_SetKeyShift(mm1, 3, 0, 0);
    mm_SetTranspose(mm1, 0, 0);

    auto onMm1 = sweep(0x78);
    onMm1[3] = "0: BC 78 00";
    mm_SetKeyShift(mm1, 3, 200, 1);
    EXPECT_THAT(sent(), ElementsAre("0: BC 78 00"));
    EXPECT_EQ(+MM1.keyShift[3], 200);
    MM1.keyShift[3] = 0;
    mm_SetTranspose(mm1, -200, 1);
    EXPECT_EQ(sent(), onMm1);
    EXPECT_EQ(+MM1.transpose, -200);
    MM1.transpose = 0;
    mm_SetMasterTranspose(-300);
    EXPECT_EQ(sent(), joined(onMm1, sweep(0x78, 1)));
    EXPECT_EQ(g_masterTranspose, -300);
    EXPECT_EQ(seen.size(), 2u * (1 + 16 + 16));
    EXPECT_THAT(seen, Each(0));
    EXPECT_EQ(g_busy, 0u);
}

TEST_F(ChannelSettings, Master_transposition_sweeps_player_1_twice_when_both_have_its_handle) {
    settings.deviceIndex2 = 0;
    start();
    mm_Close(mm1);
    sent();
    mm_SetMasterTranspose(1);
    EXPECT_EQ(sent(), joined(sweep(0x78), sweep(0x78)));
}

TEST_F(ChannelSettings, Immediate_senders_limit_their_values_and_store_nothing) {
    using Sender = std::uint32_t(CORVMO_CALL*)(HMIDIOUT, std::int16_t, std::int16_t);
    startRouted();
    const MIDIOUT before = MM1;
    const std::pair<Sender, std::string> senders[] = {{mm_SetMIDIVolume, "0: BC 07 "},
                                                      {mm_SetMIDIBalance, "0: BC 0A "},
                                                      {mm_SetMIDIReverb, "0: BC 5B "},
                                                      {mm_SetMIDIChorus, "0: BC 5D "}};
    for (const auto& [sender, prefix] : senders) {
        for (const std::int16_t value :
             std::to_array<std::int16_t>({0, 64, 127, 128, 256, 32767, -1, -32768})) {
            EXPECT_EQ(sender(mm1, 3, value), 0u);
        }
        EXPECT_THAT(sent(),
                    ElementsAre(prefix + "00", prefix + "40", prefix + "7F", prefix + "7F",
                                prefix + "7F", prefix + "7F", prefix + "00", prefix + "00"));
        EXPECT_EQ(sender(mm1, 16, 1), std::uint32_t{MMSYSERR_INVALPARAM});
        EXPECT_EQ(sender(mm1, -1, 1), std::uint32_t{MMSYSERR_INVALPARAM});
    }
    const std::int16_t words[] = {130, -1, 200};
    EXPECT_EQ(mm_SetMIDIPatch(mm1, 3, words), 0u);
    EXPECT_THAT(sent(), ElementsAre("0: BC 00 7F", "0: BC 20 00", "0: CC 7F"));
    EXPECT_EQ(std::memcmp(&before, &MM1, sizeof MM1), 0);
}

TEST_F(ChannelSettings, Immediate_senders_answer_the_code_of_their_last_message) {
    startRouted();
    machine::output(0).shortResult = kNotReady;
    const std::int16_t words[] = {1, 2, 3};
    EXPECT_EQ(mm_SetMIDIVolume(mm1, 3, 1), kNotReady);
    EXPECT_EQ(mm_SetMIDIPatch(mm1, 3, words), kNotReady);
    machine::output(0).onMessage = [] {
        seen.push_back(0);
        machine::output(0).shortResult = seen.size() == 3 ? MMRESULT{0} : kNotReady;
    };
    EXPECT_EQ(mm_SetMIDIPatch(mm1, 3, words), 0u) << "the first two failed";
    EXPECT_EQ(mm_SetMIDIPatch(mm1, 16, words), std::uint32_t{MMSYSERR_INVALPARAM});
    EXPECT_EQ(mm_SetMIDIPatch(mm1, 3, nullptr), std::uint32_t{MMSYSERR_INVALPARAM});
    EXPECT_EQ(seen.size(), 3u);
}
