// A short song, and everything that its playing sends and tells, tick by tick.
#include <map>
#include <sstream>

#include "tests/support/engine_test.h"

namespace {

const std::map<UINT, std::string> kNames{
    {MMN_PROGRAM, "PROGRAM"}, {MMN_TEMPO, "TEMPO"},   {MMN_POSITION, "POSITION"},
    {MMN_END, "END"},         {MMN_NOTEON, "NOTEON"}, {MMN_NOTEOFF, "NOTEOFF"},
    {MMN_VOLUME, "VOLUME"},   {MMN_PAN, "PAN"},       {MMN_LYRIC, "LYRIC"},
    {MMN_CHORD, "CHORD"},     {MMN_LOOP, "LOOP"}};

} // namespace

class Trace : public EngineTest {
protected:
    /// What the last call made the engine send, then what it told, after the position it left.
    void add(const std::string& what) {
        trace_ << what << '\n';
        for (const std::string& line : sent()) {
            addLine(line);
        }
        for (const Posted& one : posted()) {
            const bool isEnd = one.message == MMN_END;
            trace_ << "    " << kNames.at(one.message) << ' ' << (isEnd ? 0 : one.wParam) << ' '
                   << one.lParam << '\n';
        }
    }

    std::ostringstream trace_;

private:
    /// A sweep over the 16 channels is one line.
    void addLine(std::string line) {
        const bool sweep = line.ends_with(" 7B 00") || line.ends_with(" 79 00");
        if (!sweep || line[4] == '0') {
            trace_ << "    " << line.replace(4, sweep ? 1 : 0, sweep ? "*" : "") << '\n';
        }
    }
};

TEST_F(Trace, A_song_is_played_like_this) {
    start();
    SongBuilder song(100);
    TrackBuilder& track = song.track();
    track.systemExclusive({0x7E, 0x7F, 0x09, 0x01}).tempo(500000).timeSignature(3, 2);
    track.controller(2, 0, 1).program(2, 24).controller(2, 7, 90).controller(2, 10, 0);
    track.at(10).lyric("Hel").noteOn(2, 60).noteOn(9, 36).at(12).lyric("lo").at(14).noteOff(2, 60);
    track.lyric("%Am").noteOn(2, 64).tempo(1000000).at(15).noteOn(2, 64, 0).event({0xE2, 0, 80});
    track.at(17).program(9, 8).at(20).noteOff(9, 36);
    const MMCLICK click{1, 1, 9, 77, 127, 76, 100, 0, 0};
    ASSERT_EQ(mm_Open(mm1, song.write().c_str(), kAllOptions, 0, 0, &click), 1);
    MMLOOP ranges[MM_MAX_LOOPS];
    std::fill(std::begin(ranges), std::end(ranges), MMLOOP{0, MMLOOP_UNUSED, 0, 0, 0, 0});
    ranges[0] = {0, 14, 17, 0, 2, 0};
    ranges[1] = {0, 17, 0, 0, 1, 0};
    mm_SetLoop(mm1, ranges);
    mm_SetTranspose(mm1, 2, 0);
    sent();
    EXPECT_EQ(mm_PlayFirstNote(mm1), 1);
    add("first note");
    mm_StartSync(mm1);
    while (MM1.playing != 0) {
        ticks(1);
        add(std::to_string(MM1.ticks));
    }
    EXPECT_EQ(trace_.str(), R"(first note
    0: F0 7E 7F 09 01 F7
    0: B2 00 01
    0: B2 20 00
    0: C2 18
    0: B2 07 5A
    0: B2 0A 40
    TEMPO 1 500000
    PROGRAM 2 1572865
    VOLUME 2 90
    PAN 2 0
12
    1: 89 4C 00
    1: 99 4D 7F
    0: 92 3E 64
    0: 99 24 64
    LYRIC 0 0
    CHORD 0 0
    NOTEON 2 0
    LYRIC 1 0
    NOTEON 9 0
14
    0: 82 3E 40
    0: 92 42 64
    LYRIC 2 0
    CHORD 1 0
    NOTEOFF 2 0
    NOTEON 2 0
    TEMPO 0 1000000
15
    0: 92 42 00
    0: E2 00 50
    NOTEOFF 2 0
16
16
    0: B* 7B 00
    0: B* 79 00
    0: B2 00 01
    0: B2 20 00
    0: C2 18
    0: B2 07 5A
    0: B2 0A 40
    0: 82 3E 40
    0: 92 42 64
    0: 92 42 00
    0: E2 00 50
    PROGRAM 2 1572865
    VOLUME 2 90
    PAN 2 0
    TEMPO 2 500000
    CHORD 1 0
    LYRIC 3 0
    POSITION 0 14
    LOOP 0 14
    LOOP 0 14
    CHORD 1 0
    NOTEOFF 2 0
    NOTEON 2 0
    TEMPO 0 1000000
    NOTEOFF 2 0
17
    1: 89 4C 00
    1: 99 4D 7F
    0: B9 00 00
    0: B9 20 00
    0: C9 08
    LOOP 0 17
    PROGRAM 9 524288
18
19
20
    0: B* 7B 00
    END 0 0
)");
}
