// The public headers in a program written in C.
#include <algorithm>

#include "tests/support/engine_test.h"

extern "C" int cHostStart(const MMINIT* settings, const char* file, HMIDIOUT* player);

class PublicHeaders : public EngineTest {};

TEST_F(PublicHeaders, Serve_a_host_written_in_C) {
    start();
    mm_EndEngine();
    SongBuilder song;
    song.track().controller(0, 7, 100).program(0, 5).note(0, 60, 10).note(9, 36, 10);
    ASSERT_EQ(cHostStart(&settings, song.write().c_str(), &mm1), 0);
    playToEnd();
    // The failed opening was closed first, which may have silenced something.
    std::vector<std::string> log = sent();
    log.erase(log.begin(), std::find(log.begin(), log.end(), "0: B0 07 48"));
    log.resize(7);
    EXPECT_THAT(log, ::testing::ElementsAre("0: B0 07 48", "0: B0 00 01", "0: B0 20 02", "0: C0 28",
                                            "0: 90 3C 64", "0: 80 3C 40", "0: 99 23 64"));
}
