// The play list's order and what is current in it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/play_list.h"

using desktop::PlayList;
using testing::ElementsAre;

TEST(PlayList, Goes_on_from_song_to_song_and_ends) {
    PlayList list;
    EXPECT_EQ(list.neighbour(1), std::nullopt);
    list.add({L"a", L"b"});
    EXPECT_EQ(list.neighbour(1), 0u);
    list.select(0);
    EXPECT_EQ(list.neighbour(-1), std::nullopt);
    EXPECT_EQ(list.neighbour(1), 1u);
    list.select(1);
    EXPECT_EQ(list.neighbour(1), std::nullopt);
    list.select(7);
    EXPECT_EQ(list.current(), 1u);
}

TEST(PlayList, The_current_song_stays_itself_when_others_move) {
    PlayList list;
    list.add({L"a", L"b", L"c"});
    list.select(1);
    EXPECT_EQ(list.move(1, 1), 2u);
    EXPECT_EQ(list.current(), 2u);
    EXPECT_EQ(list.move(2, 1), 2u);
    EXPECT_EQ(list.move(0, -1), 0u);
    list.remove(0);
    EXPECT_EQ(list.current(), 1u);
    EXPECT_THAT(list.paths(), ElementsAre(L"c", L"b"));
    list.remove(1);
    EXPECT_EQ(list.current(), std::nullopt);
    list.remove(9);
    EXPECT_EQ(list.paths().size(), 1u);
}

TEST(PlayList, Songs_are_named_by_their_files) {
    EXPECT_EQ(desktop::songName(L"C:\\My songs\\Daisy Bell.kar"), L"Daisy Bell");
    EXPECT_EQ(desktop::songName(L"Z:/songs/a.b.mid"), L"a.b");
    EXPECT_EQ(desktop::songName(L".mid"), L".mid");
}
