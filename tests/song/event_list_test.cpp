// The event list: the order of equal times, growth, and the end of a song.
#include <algorithm>
#include <cstring>
#include <random>

#include "song/song.h"
#include "tests/support/engine_test.h"
#include "tests/support/plain_sort.h"

using ::testing::ElementsAre;

namespace {

constexpr unsigned kSeed = 20261122;

using Events = std::vector<MMEVENT>;

/// Records with these times, each numbered in its data bytes.
Events numbered(const std::vector<std::uint32_t>& times) {
    Events events;
    for (std::size_t i = 0; i < times.size(); ++i) {
        events.push_back({0x90, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8),
                          static_cast<std::uint8_t>(i >> 16), times[i]});
    }
    return events;
}

void expectSorted(const std::vector<std::uint32_t>& times, const std::string& what) {
    const auto count = static_cast<int>(times.size());
    Events expected = numbered(times);
    Events events = expected;
    plainSort(expected.data(), 0, count - 1);
    sortEvents(events.data(), count);
    ASSERT_EQ(std::memcmp(events.data(), expected.data(), times.size() * sizeof(MMEVENT)), 0)
        << what;
}

std::vector<int> orderOf(int count) {
    Events events = numbered(std::vector<std::uint32_t>(static_cast<std::size_t>(count), 5));
    sortEvents(events.data(), count);
    std::vector<int> order;
    for (const MMEVENT& event : events) {
        order.push_back(event.byte1);
    }
    return order;
}

} // namespace

class EventList : public EngineTest {};

TEST_F(EventList, Equal_times_end_in_the_order_that_hosts_expect) {
    EXPECT_THAT(orderOf(2), ElementsAre(1, 0));
    EXPECT_THAT(orderOf(3), ElementsAre(1, 2, 0));
    EXPECT_THAT(orderOf(9), ElementsAre(4, 1, 2, 3, 0, 5, 6, 7, 8));

    SCOPED_TRACE("seed " + std::to_string(kSeed));
    std::mt19937 random(kSeed);
    for (int round = 0; round < 6000 && !HasFatalFailure(); ++round) {
        // Sizes around the selection pass are the commonest, then those of a few blocks of comparisons; few
        // distinct times make many ties.
        const std::size_t size = round % 4 != 0   ? 2 + random() % 19
                                 : round % 8 == 0 ? 2 + random() % 300
                                                  : 2 + random() % 2000;
        const std::uint32_t distinct = 1 + static_cast<std::uint32_t>(random() % (size + 2));
        std::vector<std::uint32_t> times(size);
        for (std::uint32_t& time : times) {
            time = static_cast<std::uint32_t>(random()) % distinct * 0x00FFFFFF;
        }
        if (round % 3 == 0) {
            // Tracks one after the other, each in order.
            const std::size_t tracks = 1 + random() % 20;
            for (std::size_t track = 0; track < tracks; ++track) {
                std::sort(times.begin() + static_cast<std::ptrdiff_t>(size * track / tracks),
                          times.begin() + static_cast<std::ptrdiff_t>(size * (track + 1) / tracks));
            }
        }
        expectSorted(times, "round " + std::to_string(round));
    }
}

TEST_F(EventList, Adversarial_lists_are_sorted_in_the_order_that_hosts_expect) {
    for (const std::size_t size :
         {2u,  8u,  9u,  16u,  31u,  32u,  33u,  34u,  63u,  64u,   65u,
          66u, 96u, 97u, 127u, 128u, 129u, 130u, 192u, 193u, 1000u, 20000u}) {
        std::vector<std::uint32_t> rising(size);
        std::vector<std::uint32_t> saw(size);
        std::vector<std::uint32_t> organ(size);
        std::vector<std::uint32_t> wall(size);
        for (std::size_t i = 0; i < size; ++i) {
            rising[i] = static_cast<std::uint32_t>(i);
            saw[i] = static_cast<std::uint32_t>(i % 3);
            organ[i] = static_cast<std::uint32_t>(std::min(i, size - i));
            // Sixteen tracks that share sixteen ticks, from the first that there is to the last.
            wall[i] = static_cast<std::uint32_t>(i * 256 / size % 16 * 0x11111111);
        }
        const std::string what = std::to_string(size);
        expectSorted(std::vector<std::uint32_t>(size, 0), what + " equal");
        expectSorted(std::vector<std::uint32_t>(size, 0xFFFFFFFF), what + " equal at the end");
        expectSorted(rising, what + " rising");
        expectSorted({rising.rbegin(), rising.rend()}, what + " falling");
        expectSorted(saw, what + " three times");
        expectSorted(organ, what + " up and down");
        expectSorted(wall, what + " sixteen ticks");
    }
}

TEST_F(EventList, A_song_of_several_tracks_is_put_in_order) {
    start();
    SongBuilder song;
    song.track().noteOn(0, 1).at(480).noteOn(0, 2);
    song.track().noteOn(1, 3).at(240).noteOn(1, 4);
    ASSERT_EQ(open(song), 1);
    // Of the two at the start the later track's comes first: the selection pass puts it there.
    EXPECT_THAT(eventLines(MM1), ElementsAre("0 91 03 64 00", "0 90 01 64 00", "240 91 04 64 00",
                                             "480 90 02 64 00"));
}

TEST_F(EventList, The_buffer_grows_and_keeps_contents_and_order) {
    start();
    constexpr int kCounts[] = {32767, 32768, 32769, 36864, 36865, 45000};
    constexpr int kCapacities[] = {32768, 32768, 36864, 36864, 40960, 45056};
    for (std::size_t i = 0; i < std::size(kCounts); ++i) {
        SongBuilder song;
        TrackBuilder& track = song.track();
        for (int k = 0; k < kCounts[i]; ++k) {
            track.at(static_cast<std::uint32_t>(k)).noteOn(0, k / 128 % 128, k % 128);
        }
        song.track();
        ASSERT_EQ(open(song), 1);
        ASSERT_EQ(mm_GetNumEvents(mm1), kCounts[i]);
        EXPECT_EQ(+MM1.eventCapacity, kCapacities[i]);
        EXPECT_EQ(+MM1.eventPlay, +MM1.events);
        EXPECT_EQ(+MM1.eventEnd, MM1.events + kCounts[i]);
        for (int k = 0; k < kCounts[i]; ++k) {
            const MMEVENT& event = *mm_GetPointerEvents(mm1, k);
            ASSERT_EQ(+event.time, static_cast<std::uint32_t>(k));
            ASSERT_EQ(event.byte1 * 128 + event.byte2, k % 16384);
        }
        EXPECT_EQ(g_busy.load(), 0u);
    }
}

TEST_F(EventList, A_song_ends_on_the_beat_when_asked) {
    start();
    using Ends = std::pair<std::uint32_t, std::uint32_t>; // last event, end note (0 = none)
    for (const auto& [last, end] : {Ends{0, 0}, Ends{1, 480}, Ends{479, 480}, Ends{1920, 0},
                                    Ends{1921, 2400}, Ends{0xFFFFFFFF, 0xFFFFFFFF}}) {
        SongBuilder song;
        song.track().noteOn(0, 60).at(last).controller(0, 7, 1);
        ASSERT_EQ(open(song, 0, 1), 1);
        EXPECT_EQ(mm_GetNumEvents(mm1), end == 0 ? 2 : 3) << last;
        EXPECT_EQ(eventLines(MM1).back() == std::to_string(end) + " 80 00 00 00", end != 0) << last;
    }
    SongBuilder empty;
    empty.track().at(7).text("nothing");
    ASSERT_EQ(open(empty, 0, 1), 1);
    EXPECT_EQ(mm_GetNumEvents(mm1), 0);
}

TEST_F(EventList, A_song_is_cut_after_its_last_note) {
    start();
    SongBuilder song;
    song.track().note(0, 60, 96).controller(0, 7, 1).at(200).tempo(400000).timeSignature(3, 2);
    song.track().systemExclusive({0x7D}).at(97).program(3, 5);
    ASSERT_EQ(open(song), 1);
    EXPECT_EQ(eventLines(MM1).back(), "96 80 3C 40 00");
    EXPECT_EQ(+MM1.eventEnd, MM1.events + MM1.eventCount);

    SongBuilder oneNote;
    oneNote.track().noteOn(15, 60).at(9).controller(0, 7, 1).event({0xE0, 0x90, 0x80});
    ASSERT_EQ(open(oneNote), 1);
    EXPECT_THAT(eventLines(MM1), ElementsAre("0 9F 3C 64 00"));

    SongBuilder noNote;
    noNote.track().tempo(400000).at(9).timeSignature(6, 3).systemExclusive({1});
    ASSERT_EQ(open(noNote), 1);
    EXPECT_THAT(eventLines(MM1), ElementsAre("0 51 06 1A 80", "9 58 06 08 00", "9 F0 00 00 03"));
}
