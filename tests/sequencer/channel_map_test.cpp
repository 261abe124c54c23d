// The channel map: what it records of a song, and what sending it makes of the record.
#include <algorithm>
#include <map>

#include "tests/support/engine_test.h"

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Events = std::initializer_list<std::initializer_list<int>>;

/// Slots that hold a value, by number.
std::map<int, int> recorded(const MMMAPCHANNEL& channel) {
    std::map<int, int> slots;
    for (int slot = 0; slot < MMMAP_SLOTS; ++slot) {
        if (channel.slot[slot] != MMMAP_NONE8) {
            slots[slot] = channel.slot[slot];
        }
    }
    return slots;
}

/// Slots of the controllers that are recorded as they are: those with a fine half, then the others.
std::map<int, int> slotsOfControllers() {
    std::map<int, int> slots{{0, 6},  {1, 8},   {2, 10},  {4, 12},  {5, 14}, {7, 16},
                             {8, 18}, {10, 20}, {11, 22}, {12, 24}, {13, 26}};
    for (const auto& [controller, slot] : std::map<int, int>(slots)) {
        slots[controller + 32] = slot + 1;
    }
    for (int i = 0; i < 4; ++i) {
        slots[16 + i] = 28 + i;
    }
    for (int i = 0; i <= 20; ++i) {
        slots[64 + i] = 32 + i;
    }
    for (int i = 0; i < 5; ++i) {
        slots[91 + i] = 53 + i;
    }
    return slots;
}

} // namespace

class ChannelMap : public EngineTest {
protected:
    /// A song whose events stand on tick 10, with a note at 1000.
    static SongBuilder songOf(Events events) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        track.at(10);
        for (const auto& event : events) {
            track.event(event);
        }
        track.at(1000).noteOn(15, 0);
        return song;
    }

    /// Opens such a song and builds its map.
    void build(Events events, std::uint32_t tick = 11, int endOnBeat = 0) {
        ASSERT_EQ(open(songOf(events), 0, endOnBeat), 1);
        mm_CreateMap(mm1, tick);
        sent();
    }

    /// What a send of the map says after the reset of the controllers.
    std::vector<std::string> sentByMap() {
        mm_SendMap(mm1, 11);
        std::vector<std::string> lines = sent();
        EXPECT_GE(lines.size(), 16U);
        lines.erase(lines.begin(), lines.begin() + 16);
        return lines;
    }
};

TEST_F(ChannelMap, Records_every_controller_in_its_slot_and_the_others_not_at_all) {
    start();
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (int controller = 0; controller < 128; ++controller) {
        track.controller(3, controller, 1).controller(3, controller, 127 - controller);
    }
    track.at(1000).noteOn(15, 0);
    ASSERT_EQ(open(song), 1);
    mm_CreateMap(mm1, 1);
    std::map<int, int> expected;
    for (const auto& [controller, slot] : slotsOfControllers()) {
        expected[slot] = 127 - controller;
    }
    EXPECT_EQ(recorded(mm_GetMap(mm1)->channel[3]), expected);
    EXPECT_THAT(recorded(mm_GetMap(mm1)->channel[2]), IsEmpty());
    EXPECT_EQ(+MM1.map.tempo, MMMAP_NONE32);
    EXPECT_EQ(+MM1.map.beatsPerBar, MMMAP_NONE16);
}

TEST_F(ChannelMap, Records_messages_before_its_tick_alone) {
    start();
    SongBuilder song;
    TrackBuilder& track = song.track();
    track.tempo(400000).timeSignature(3, 2).controller(0, 7, 100);
    track.at(99).event({0xA1, 60, 7}).program(1, 5).event({0xD1, 6}).event({0xE1, 1, 2});
    track.tempo(0x123456).timeSignature(7, 3).controller(0, 7, 80).noteOn(0, 60);
    track.at(100).controller(0, 7, 1).tempo(1).timeSignature(1, 0).program(1, 9);
    track.at(1000).noteOff(0, 60);
    ASSERT_EQ(open(song), 1);
    mm_CreateMap(mm1, 100);
    const MMMAP& map = *mm_GetMap(mm1);
    EXPECT_EQ(+map.tempo, 0x123456U);
    EXPECT_EQ(+map.beatsPerBar, 7);
    EXPECT_EQ(+map.beatUnit, 8);
    EXPECT_EQ(+map.timeSigTick, 99U);
    EXPECT_EQ(recorded(map.channel[0]), (std::map<int, int>{{16, 80}}));
    EXPECT_EQ(recorded(map.channel[1]),
              (std::map<int, int>{{0, 60}, {1, 7}, {2, 5}, {3, 6}, {4, 1}, {5, 2}}));
    mm_CreateMap(mm1, 101);
    EXPECT_EQ(+map.tempo, 1U);
    EXPECT_EQ(+map.channel[0].slot[MMSLOT_VOLUME], 1);
    mm_CreateMap(mm1, 0);
    EXPECT_EQ(+map.tempo, MMMAP_NONE32);
    EXPECT_THAT(recorded(map.channel[0]), IsEmpty());
}

TEST_F(ChannelMap, Takes_data_entries_for_the_kind_of_number_that_any_channel_chose_last) {
    start();
    const auto slots = [this](Events events) {
        build(events);
        return recorded(MM1.map.channel[2]);
    };
    using Slots = std::map<int, int>;
    EXPECT_EQ(slots({{0xB2, 101, 0}, {0xB2, 100, 0}, {0xB2, 6, 12}}), (Slots{{58, 12}}));
    EXPECT_EQ(slots({{0xB2, 6, 12}, {0xB2, 100, 0}, {0xB2, 6, 12}}), Slots{});
    EXPECT_EQ(slots({{0xB2, 99, 1}, {0xB2, 98, 32}, {0xB2, 6, 70}, {0xB2, 6, 80}}),
              (Slots{{70, 80}}));
    EXPECT_EQ(slots({{0xB2, 99, 0}, {0xB2, 98, 32}, {0xB2, 6, 70}}), Slots{});
    EXPECT_EQ(slots({{0xB2, 98, 32}, {0xB5, 101, 0}, {0xB2, 99, 1}, {0xB2, 6, 5}}),
              (Slots{{70, 5}}));
    EXPECT_EQ(slots({{0xB2, 101, 0},
                     {0xB2, 100, 2},
                     {0xB2, 99, 1},
                     {0xB2, 98, 8},
                     {0xB5, 101, 127},
                     {0xB2, 6, 33}}),
              (Slots{{62, 33}}))
        << "the mode is shared, the numbers are not";
    EXPECT_EQ(slots({{0xB2, 101, 0}, {0xB2, 100, 1}, {0xB5, 98, 9}, {0xB2, 6, 33}}), Slots{});
    EXPECT_EQ(slots({{0xB2, 101, 0},
                     {0xB2, 100, 3},
                     {0xB2, 99, 1},
                     {0xB2, 98, 11},
                     {0xB2, 6, 1},
                     {0xB2, 100, 3},
                     {0xB2, 6, 1}}),
              Slots{})
        << "parameters that the map does not know";
}

TEST_F(ChannelMap, Sends_everything_it_recorded_in_one_fixed_order) {
    start();
    SongBuilder song;
    TrackBuilder& track = song.track();
    for (const auto& [controller, slot] : slotsOfControllers()) {
        track.controller(2, controller, slot);
    }
    for (const int low : {102, 100, 99, 33, 32, 10, 9, 8}) {
        track.controller(2, 99, 1).controller(2, 98, low).controller(2, 6, low);
    }
    for (const int low : {2, 1, 0}) {
        track.controller(2, 101, 0).controller(2, 100, low).controller(2, 6, low);
    }
    track.event({0xA2, 60, 1}).program(2, 9).event({0xD2, 3}).event({0xE2, 4, 5});
    track.at(1000).noteOn(15, 0);
    ASSERT_EQ(open(song), 1);
    mm_SetChannelDevice(mm1, 2, 1, 0);
    mm_SetChannelOut(mm1, 2, 12, 0);
    mm_CreateMap(mm1, 100);
    sent();
    mm_SendMap(mm1, 100);
    const std::vector<std::string> lines = sent();
    ASSERT_GT(lines.size(), 16U);
    EXPECT_EQ(lines[0], "0: B0 79 00");
    EXPECT_EQ(lines[2], "1: BC 79 00");
    EXPECT_EQ(lines[15], "0: BF 79 00");
    EXPECT_THAT(std::vector<std::string>(lines.begin() + 16, lines.end()),
                ElementsAre("1: BC 00 06", "1: BC 20 07", "1: CC 09",                   // program
                            "1: BC 07 10", "1: BC 5B 35", "1: BC 5D 37", "1: BC 0A 14", // mix
                            "1: BC 08 12", "1: BC 28 13", "1: BC 0B 16", "1: BC 2B 17",
                            "1: BC 01 08", "1: BC 21 09", "1: BC 5C 36", "1: BC 5E 38",
                            "1: BC 5F 39", "1: EC 04 05", "1: DC 03", // bend and pressure
                            "1: BC 02 0A", "1: BC 22 0B", "1: BC 04 0C", "1: BC 24 0D",
                            "1: BC 05 0E", "1: BC 25 0F", "1: BC 0C 18", "1: BC 2C 19",
                            "1: BC 0D 1A", "1: BC 2D 1B", "1: BC 10 1C", "1: BC 11 1D",
                            "1: BC 12 1E", "1: BC 13 1F", "1: BC 40 20", "1: BC 41 21",
                            "1: BC 42 22", "1: BC 43 23", "1: BC 44 24", "1: BC 45 25",
                            "1: BC 54 34", // last plain one
                            "1: BC 63 01", "1: BC 62 08", "1: BC 06 08", "1: BC 62 09",
                            "1: BC 06 09", "1: BC 62 0A", "1: BC 06 0A", "1: BC 62 20",
                            "1: BC 06 20", "1: BC 62 21", "1: BC 06 21", "1: BC 62 63",
                            "1: BC 06 63", "1: BC 62 64", "1: BC 06 64", "1: BC 62 66",
                            "1: BC 06 66", // non-registered
                            "1: BC 65 00", "1: BC 64 00", "1: BC 06 00", "1: BC 64 01",
                            "1: BC 06 01", "1: BC 64 02", "1: BC 06 02")); // registered
}

TEST_F(ChannelMap, Sends_channel_after_channel_and_a_fine_half_only_with_its_controller) {
    start();
    build({{0xBF, 1, 5},
           {0xB0, 33, 7},
           {0xB0, 43, 8},
           {0xB0, 11, 9},
           {0xB1, 39, 1},
           {0xB1, 42, 1},
           {0xA1, 60, 1},
           {0xB1, 70, 1},
           {0xB1, 83, 1},
           {0xBF, 100, 2},
           {0xBF, 101, 0},
           {0xBF, 6, 64}});
    EXPECT_THAT(sentByMap(), ElementsAre("0: B0 0B 09", "0: B0 2B 08", "0: BF 01 05", "0: BF 65 00",
                                         "0: BF 64 02", "0: BF 06 40"));
}

TEST_F(ChannelMap, Applies_the_channels_settings_and_tells_the_host) {
    start();
    build({{0xB4, 0, 2}, {0xB4, 32, 3}, {0xC4, 5}, {0xB4, 7, 120}, {0xB4, 10, 0}});
    const MMPATCH override{8, 1, 40, 0};
    mm_SetPatch(mm1, 4, &override);
    mm_SetVolume(mm1, 4, 20);
    mm_SetBalance(mm1, 4, -60);
    mm_SetOptions(mm1, MMOPT_CHANNELS);
    EXPECT_THAT(sentByMap(), ElementsAre("0: B4 00 08", "0: B4 20 01", "0: C4 28", "0: B4 07 7F",
                                         "0: B4 0A 04"));
    EXPECT_THAT(posted(), ElementsAre(Posted{MMN_PROGRAM, 4, 5 << 16 | 3 << 8 | 2},
                                      Posted{MMN_PATCH, 4, 40 << 16 | 1 << 8 | 8},
                                      Posted{MMN_VOLUME, 4, 120}, Posted{MMN_PAN, 4, 0}));
}

TEST_F(ChannelMap, A_bank_without_a_program_is_stored_for_the_next_one) {
    start();
    build({{0xB4, 0, 2}, {0xB4, 32, 3}});
    MM1.patch[4].bankMsb = 99;
    EXPECT_THAT(sentByMap(), IsEmpty());
    EXPECT_EQ(+MM1.patch[4].bankMsb, 2);
    EXPECT_EQ(+MM1.patch[4].bankLsb, 3);
}

TEST_F(ChannelMap, Is_not_sent_and_perhaps_not_recorded_when_chasing_is_off) {
    const Events events = {{0xFF, 0x51, 3, 6, 0, 0}, {0xFF, 0x58, 4, 3, 3, 24, 8}, {0xB4, 7, 100}};
    struct Case {
        std::int16_t noChase;
        int endOnBeat;
        bool recorded;
        bool sent;
    };
    for (const Case& one :
         {Case{0, 0, true, true}, Case{1, 0, false, false}, Case{2, 0, true, false},
          Case{0, 1, false, false}, Case{0, -1, true, false}}) {
        settings.noChase = one.noChase;
        start();
        build(events, 500, one.endOnBeat);
        EXPECT_EQ(+MM1.map.channel[4].slot[MMSLOT_VOLUME], one.recorded ? 100 : MMMAP_NONE8);
        mm_SetOptions(mm1, MMOPT_POSITION);
        mm_SendMap(mm1, 500);
        EXPECT_EQ(sent().size(), one.sent ? 17U : 0U);
        EXPECT_THAT(posted(), ElementsAre(Posted{MMN_POSITION, 0, 500}));
        EXPECT_EQ(mm_GetTempo(mm1), 0x60000U);
        EXPECT_EQ(+MM1.beatsPerBar, 3);
        EXPECT_EQ(+MM1.ticks, 500U);
        mm_Close(mm1);
        mm_EndEngine();
    }
}

TEST_F(ChannelMap, One_that_was_never_built_is_built_before_it_is_sent) {
    start();
    ASSERT_EQ(open(songOf({{0xB4, 7, 100}, {0xFF, 0x51, 3, 6, 0, 0}})), 1);
    sent();
    EXPECT_THAT(sentByMap(), ElementsAre("0: B4 07 64"));
    EXPECT_EQ(mm_GetTempo(mm1), 0x60000U);
    mm_Close(mm1);
    EXPECT_THAT(std::vector<std::uint8_t>(MM1.map.channel[4].slot, MM1.map.channel[4].slot + 90),
                Each(0));
}

TEST_F(ChannelMap, May_be_sent_at_another_tick_than_it_was_built_for) {
    start();
    build({{0xB4, 7, 100}}, 5);
    EXPECT_THAT(sentByMap(), IsEmpty());
    EXPECT_EQ(+MM1.ticks, 11U);
    EXPECT_EQ(+MM1.eventIndex, 1);
}

TEST_F(ChannelMap, Of_a_player_without_a_song_is_empty_and_harmless) {
    start();
    mm_CreateMap(mm2, 100);
    mm_SendMap(mm2, 100);
    EXPECT_THAT(recorded(MM2.map.channel[0]), IsEmpty());
    EXPECT_EQ(+MM2.ticks, 0U);
    EXPECT_THAT(mm_GetMap(mm2), &MM2.map);
    SongBuilder silent;
    silent.track();
    ASSERT_EQ(open(silent), 1);
    mm_SendMap(mm1, 100);
    EXPECT_EQ(+MM1.ticks, 0U) << "a song without events has one position";
}
