#include "tests/support/engine_test.h"

using ::testing::ElementsAre;

class FirstPlay : public EngineTest {};

TEST_F(FirstPlay, A_song_plays_from_file_to_device) {
    start();
    SongBuilder song;
    song.track().note(3, 60, 96);
    play(song);
    playToEnd();
    EXPECT_THAT(sent(0x90), ElementsAre("0: 93 3C 64"));
    EXPECT_THAT(stillSounding(history()), ElementsAre());
}
