// Songs on the system's own timer: what the outputs receive and when, and what the host's window is told.
#include <algorithm>
#include <iterator>
#include <sstream>

#include "tests/windows/dll_test.h"

namespace {

using ::testing::IsEmpty;

constexpr int kTicksPerSecond = 960;        ///< 480 to the quarter note, 500000 microseconds each
constexpr double kUsualDelay = 2 * kPeriod; ///< milliseconds
constexpr double kWorstDelay = 3000; ///< milliseconds; the machine may be busy with other things

/// Milliseconds from a song's start to the timer period in which a tick is due.
double dueTime(std::uint32_t tick) {
    const auto period = static_cast<std::uint32_t>(kPeriod);
    const std::uint32_t step = kTicksPerSecond * period;
    return (tick * 1000 + step - 1) / step * period;
}

/// Milliseconds by which the events left later than the most punctual one, in rising order.
std::vector<double> delays(const std::vector<Sent>& log, const std::vector<std::uint32_t>& ticks) {
    std::vector<double> late;
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        late.push_back(static_cast<double>(log[i].time) / 1000 - dueTime(ticks[i]));
    }
    std::sort(late.begin(), late.end());
    const double punctual = late.front();
    for (double& delay : late) {
        delay -= punctual;
    }
    return late;
}

/// One item a line, so that a mismatch is shown as a difference.
template <typename Items>
std::string joined(const Items& items) {
    std::ostringstream text;
    for (const auto& item : items) {
        text << item << '\n';
    }
    return text.str();
}

/// The songs' channel messages and long messages, without the sweeps of the song's end.
std::vector<Sent> ofOutput(const std::vector<Sent>& log, int output) {
    std::vector<Sent> own;
    std::copy_if(log.begin(), log.end(), std::back_inserter(own), [&](const Sent& sent) {
        const bool sweep = (sent.bytes[0] & 0xF0) == 0xB0 && sent.bytes[1] >= 120;
        return sent.output == output && !sweep;
    });
    return own;
}

/// What evenNotes() plays, and when.
struct Expected {
    std::vector<std::string> lines;
    std::vector<std::uint32_t> ticks;

    Expected(int count, std::uint32_t distance, int output, int channel) {
        for (int i = 0; i < count; ++i) {
            const auto on = static_cast<std::uint8_t>(0x90 | channel);
            const auto off = static_cast<std::uint8_t>(0x80 | channel);
            const auto key = static_cast<std::uint8_t>(36 + i % 48);
            const std::uint32_t start = 96 + static_cast<std::uint32_t>(i) * distance;
            add(start, {output, 0, {on, key, 100}});
            if (i + 1 < count) {
                add(start + distance / 2, {output, 0, {off, key, 0x40}});
            }
        }
    }

    void add(std::uint32_t tick, const Sent& sent) {
        lines.push_back(toText(sent));
        ticks.push_back(tick);
    }
};

} // namespace

class Playing : public DllTest {
protected:
    void SetUp() override {
        load();
        ASSERT_EQ(start(), 1);
    }

    /// A song whose every part asks for a notification of its own.
    static SongBuilder tellingSong() {
        SongBuilder song;
        TrackBuilder& track = song.track();
        track.tempo(400000).program(0, 5).controller(0, 7, 100).controller(0, 10, 0);
        track.controller(0, 91, 40).controller(0, 93, 30).controller(1, 0, 1).program(1, 7);
        track.at(96).lyric("%Am").lyric("la").note(0, 60, 48);
        track.at(192).tempo(500000).at(240).note(2, 62, 96);
        track.at(384).note(0, 64, 48);
        return song;
    }

    /// What a jump announces: the channels' state at its tick, then the seek.
    static void appendJump(std::vector<Posted>& posted, LPARAM tick, LPARAM tempo, WPARAM text) {
        posted.insert(posted.end(), {{MMN_PROGRAM, 0, 0x050000},
                                     {MMN_VOLUME, 0, 100},
                                     {MMN_REVERB, 0, 40},
                                     {MMN_CHORUS, 0, 30},
                                     {MMN_PAN, 0, 0},
                                     {MMN_PROGRAM, 1, 0x070001},
                                     {MMN_PATCH, 1, 0x090302},
                                     {MMN_TEMPO, 2, tempo},
                                     {MMN_CHORD, text, 0},
                                     {MMN_LYRIC, text, 0},
                                     {MMN_POSITION, 0, tick}});
    }

    /// From the first note of the song to its second range, with the texts that fall due there.
    static void appendPass(std::vector<Posted>& posted, WPARAM firstText) {
        const auto event = [&](UINT message, WPARAM wParam, LPARAM lParam) {
            if (firstText < 2) {
                posted.insert(posted.end(), {{MMN_LYRIC, firstText, 0}, {MMN_CHORD, firstText, 0}});
                ++firstText;
            }
            posted.push_back({message, wParam, lParam});
        };
        event(MMN_NOTEON, 0, 0);
        event(MMN_NOTEOFF, 0, 0);
        event(MMN_TEMPO, 0, 500000);
        event(MMN_NOTEON, 2, 0);
    }
};

TEST_F(Playing, Sends_every_event_in_order_at_its_time) {
    constexpr int kNotes = 60;
    constexpr std::uint32_t kDistance = 48;
    constexpr std::uint32_t kEnd = 96 + kNotes * kDistance - kDistance / 2;
    SongBuilder song = evenNotes(kNotes, kDistance, 3);
    song.track().at(kEnd - 5).systemExclusive({0x7D, 0x01});
    Expected expected(kNotes, kDistance, 0, 3);
    expected.add(kEnd - 5, {0, 0, {0xF0, 0x7D, 0x01, 0xF7}});
    double usual = kWorstDelay;
    double worst = 0;
    // A busy machine gets another chance; a wrong clock shows every time.
    for (int attempt = 0; attempt < 3 && usual > kUsualDelay; ++attempt) {
        play(mm1, song);
        ASSERT_TRUE(window.waitFor(MMN_END));
        window.take();
        const std::vector<Sent> log = machine::takeSent();
        const std::vector<Sent> sent = ofOutput(log, 0);
        ASSERT_EQ(joined(toText(sent)), joined(expected.lines));
        EXPECT_THAT(stillSounding(log), IsEmpty());
        const std::vector<double> late = delays(sent, expected.ticks);
        usual = late[late.size() / 2];
        worst = late.back();
        dll.mm_Close(mm1);
        machine::takeSent();
    }
    RecordProperty("usual_delay", std::to_string(usual));
    RecordProperty("worst_delay", std::to_string(worst));
    EXPECT_LE(usual, kUsualDelay);
    EXPECT_LE(worst, kWorstDelay);
}

TEST_F(Playing, Tells_the_window_everything_with_exact_words) {
    ASSERT_EQ(dll.mm_Open(mm1, tellingSong().write().c_str(), kAllOptions, 0, 0, nullptr), 1);
    const MMPATCH patch{2, 3, 9, 0};
    dll.mm_SetPatch(mm1, 1, &patch);
    MMLOOP ranges[MM_MAX_LOOPS]{};
    for (MMLOOP& range : ranges) {
        range.start = MMLOOP_UNUSED;
    }
    ranges[0] = {0, 96, 288, 0, 2, 0};
    ranges[1] = {0, 384, 0, 0, 1, 0};
    dll.mm_SetLoop(mm1, ranges);
    EXPECT_THAT(window.take(), IsEmpty());
    ASSERT_EQ(dll.mm_PlayFirstNote(mm1), 1);
    dll.mm_StartSync(mm1);
    ASSERT_TRUE(window.waitFor(MMN_END));
    dll.mm_RewindSync(mm1);

    std::vector<Posted> expected{{MMN_TEMPO, 1, 400000},     {MMN_PROGRAM, 0, 0x050000},
                                 {MMN_VOLUME, 0, 100},       {MMN_PAN, 0, 0},
                                 {MMN_REVERB, 0, 40},        {MMN_CHORUS, 0, 30},
                                 {MMN_PROGRAM, 1, 0x070001}, {MMN_PATCH, 1, 0x090302}};
    appendPass(expected, 0);
    appendJump(expected, 96, 400000, 1);
    expected.insert(expected.end(), 2, {MMN_LOOP, 0, 96});
    appendPass(expected, 1);
    appendJump(expected, 384, 500000, 2);
    expected.insert(expected.end(), {{MMN_LOOP, 0, 384},
                                     {MMN_NOTEON, 0, 0},
                                     {MMN_END, reinterpret_cast<WPARAM>(mm1), 0},
                                     {MMN_POSITION, 0, 0},
                                     {MMN_CHORD, 0, 0},
                                     {MMN_LYRIC, 0, 0}});
    EXPECT_EQ(joined(window.take()), joined(expected));
    EXPECT_THAT(stillSounding(machine::takeSent()), IsEmpty());
}

TEST_F(Playing, Keeps_two_players_at_once_apart) {
    play(mm1, evenNotes(20, 48, 0));
    play(mm2, evenNotes(12, 30, 5));
    ASSERT_TRUE(window.waitFor(MMN_END, 2));
    const std::vector<Sent> log = machine::takeSent();
    EXPECT_EQ(joined(toText(ofOutput(log, 0))), joined(Expected(20, 48, 0, 0).lines));
    EXPECT_EQ(joined(toText(ofOutput(log, 1))), joined(Expected(12, 30, 1, 5).lines));
    EXPECT_THAT(stillSounding(log), IsEmpty());
    // The shorter song ends first.
    const Posted ends[] = {{MMN_END, reinterpret_cast<WPARAM>(mm2), 0},
                           {MMN_END, reinterpret_cast<WPARAM>(mm1), 0}};
    EXPECT_EQ(joined(window.take()), joined(ends));
}
