// Banks, programs and the four mix controllers: what the song asks for, what the host overrides, and what
// both are told.
#include "tests/support/engine_test.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Programs : public EngineTest {
protected:
    /// A song on channel 3, one group of events for each period; notifications of channel settings are on.
    void prepare(std::initializer_list<std::initializer_list<std::initializer_list<int>>> periods) {
        SongBuilder song(100); // two ticks a period
        TrackBuilder& track = song.track();
        std::uint32_t tick = 0;
        for (const auto& events : periods) {
            track.at(tick += 2);
            for (const auto& event : events) {
                track.event(event);
            }
        }
        track.at(10000).noteOff(15, 0);
        play(song, MMOPT_CHANNELS);
    }

    std::vector<std::string> next() {
        ticks(1);
        return sent();
    }

    static Posted program(UINT message, int number, int bankLsb, int bankMsb) {
        return {message, 3, number << 16 | bankLsb << 8 | bankMsb};
    }
};

TEST_F(Programs, A_bank_select_waits_for_the_next_program_change) {
    start();
    prepare({{{0xC3, 7}}, {{0xB3, 0, 8}}, {{0xB3, 32, 1}}, {{0xC3, 5}}, {{0xC4, 6}}});
    EXPECT_THAT(next(), ElementsAre("0: B3 00 00", "0: B3 20 00", "0: C3 07"));
    EXPECT_THAT(posted(), ElementsAre(program(MMN_PROGRAM, 7, 0, 0)));
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(next(), ElementsAre("0: B3 00 08", "0: B3 20 01", "0: C3 05"));
    EXPECT_THAT(posted(), ElementsAre(program(MMN_PROGRAM, 5, 1, 8)));
    EXPECT_THAT(next(), ElementsAre("0: B4 00 00", "0: B4 20 00", "0: C4 06"));
}

TEST_F(Programs, An_override_replaces_program_and_bank_and_both_are_told) {
    start();
    prepare({{{0xB3, 0, 2}, {0xB3, 32, 3}, {0xC3, 5}}, {{0xC3, 6}}});
    const MMPATCH override{8, 1, 40, 0};
    mm_SetPatch(mm1, 3, &override);
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_THAT(next(), ElementsAre("0: B3 00 08", "0: B3 20 01", "0: C3 28"));
    EXPECT_THAT(posted(), ElementsAre(program(MMN_PROGRAM, 5, 3, 2), program(MMN_PATCH, 40, 1, 8)));
    const MMPATCH none{8, 1, MMPATCH_NO_OVERRIDE, 0};
    mm_SetPatch(mm1, 3, &none);
    EXPECT_THAT(next(), ElementsAre("0: B3 00 08", "0: B3 20 01", "0: C3 06"));
    EXPECT_THAT(posted(), ElementsAre(program(MMN_PROGRAM, 6, 1, 8)));
}

TEST_F(Programs, A_kept_bank_goes_out_with_the_songs_programs) {
    start();
    prepare({{{0xB3, 0, 2}, {0xB3, 32, 3}, {0xC3, 5}}});
    const MMPATCH kept{8, 1, MMPATCH_NO_OVERRIDE, -1};
    mm_SetPatch(mm1, 3, &kept);
    EXPECT_THAT(next(), ElementsAre("0: B3 00 08", "0: B3 20 01", "0: C3 05"));
    EXPECT_THAT(posted(), ElementsAre(program(MMN_PROGRAM, 5, 1, 8)));
    EXPECT_EQ(+MM1.songPatch[3].bankMsb, 2);
    EXPECT_EQ(+MM1.songPatch[3].bankLsb, 3);
}

TEST_F(Programs, What_a_host_stores_out_of_range_leaves_within_range) {
    start();
    prepare({{{0xC3, 5}}});
    const MMPATCH wild{-3, 300, 128, 0};
    mm_SetPatch(mm1, 3, &wild);
    EXPECT_THAT(next(), ElementsAre("0: B3 00 00", "0: B3 20 7F", "0: C3 7F"));
    EXPECT_EQ(+MM1.patch[3].bankLsb, 300);
    EXPECT_EQ(+MM1.patch[3].program, 128);
}

TEST_F(Programs, The_mix_controllers_carry_offsets_and_report_the_songs_value) {
    struct Case {
        void(CORVMO_CALL* set)(HMIDIOUT, std::int16_t, std::int16_t);
        std::uint8_t controller;
        UINT message;
        std::int16_t offset;
        int value;
        int sent;
    };
    const Case cases[] = {
        {mm_SetVolume, 7, MMN_VOLUME, 20, 120, 127},    {mm_SetVolume, 7, MMN_VOLUME, -130, 120, 0},
        {mm_SetVolume, 7, MMN_VOLUME, 0, 0, 0},         {mm_SetVolume, 7, MMN_VOLUME, -20, 100, 80},
        {mm_SetBalance, 10, MMN_PAN, 0, 0, 64},         {mm_SetBalance, 10, MMN_PAN, 0, 127, 127},
        {mm_SetBalance, 10, MMN_PAN, 10, 0, 74},        {mm_SetBalance, 10, MMN_PAN, 10, 120, 127},
        {mm_SetBalance, 10, MMN_PAN, -100, 100, 1},     {mm_SetBalance, 10, MMN_PAN, -127, 10, 1},
        {mm_SetReverb, 91, MMN_REVERB, 5, 40, 45},      {mm_SetReverb, 91, MMN_REVERB, -50, 40, 0},
        {mm_SetReverb, 91, MMN_REVERB, 100, 40, 127},   {mm_SetChorus, 93, MMN_CHORUS, -7, 40, 33},
        {mm_SetChorus, 93, MMN_CHORUS, 32767, 40, 127}, {mm_SetChorus, 93, MMN_CHORUS, -40, 40, 0},
    };
    start();
    for (const Case& one : cases) {
        prepare({{{0xB3, one.controller, one.value}}});
        mm_SetChannelOut(mm1, 3, 12, 0);
        one.set(mm1, 12, 1); // another channel's offset
        one.set(mm1, 3, one.offset);
        ticks(1);
        const std::vector<Sent> log = machine::takeSent();
        ASSERT_EQ(log.size(), 1U);
        EXPECT_EQ(log[0].bytes, (Bytes{0xBC, one.controller, static_cast<std::uint8_t>(one.sent)}))
            << "controller " << int{one.controller} << " offset " << one.offset;
        EXPECT_THAT(posted(), ElementsAre(Posted{one.message, 3, one.value}));
    }
}

TEST_F(Programs, Nothing_is_told_without_the_option) {
    start();
    prepare({{{0xC3, 5}, {0xB3, 7, 1}, {0xB3, 10, 1}}});
    mm_SetOptions(mm1, MMOPT_NOTES | MMOPT_TEMPO | MMOPT_POSITION);
    EXPECT_EQ(next().size(), 5U);
    EXPECT_THAT(posted(), IsEmpty());
}
