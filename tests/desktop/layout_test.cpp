// Where everything lies, at every size and scale that a window can have.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/main_layout.h"
#include "desktop/mixer_layout.h"
#include "desktop/mixer_values.h"
#include "desktop/speed.h"
#include "desktop/words_layout.h"

using namespace desktop;

namespace {

constexpr int kSmallestRow = 12; ///< for 96 dots to the inch; lower ones cannot be read

/// Controls as wide as those of the program.
std::vector<StripItem> strip(const Scale& scale) {
    std::vector<StripItem> items;
    for (const int width : {52, 46, 58, 62, 46, 82, 42, 60, 112, 76, 66, 80, 48}) {
        items.push_back({scale(width), items.size() % 3 == 0});
    }
    return items;
}

struct Case {
    Size client;
    int dpi;
    Shown shown;
};

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const int dpi : {96, 120, 144, 192, 240}) {
        const Scale scale(dpi);
        const Size smallest = {scale(kSmallestClient.width), scale(kSmallestClient.height)};
        for (const Size size : {Size{800, 560}, Size{1024, 700}, Size{1920, 1040}, smallest}) {
            if (size.width >= smallest.width && size.height >= smallest.height) {
                for (int parts = 0; parts < 8; ++parts) {
                    all.push_back({size,
                                   dpi,
                                   {.playList = (parts & 1) != 0,
                                    .mixer = (parts & 2) != 0,
                                    .messageHeight = (parts & 4) != 0 ? scale(20) : 0}});
                }
            }
        }
    }
    return all;
}

std::vector<Box> boxesOf(const MainBoxes& boxes) {
    std::vector<Box> all = boxes.strip;
    for (const Box& box :
         {boxes.message, boxes.words, boxes.playList, boxes.mixer, boxes.position}) {
        if (!box.empty()) {
            all.push_back(box);
        }
    }
    return all;
}

void expectApart(const std::vector<Box>& boxes, const Box& outer) {
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        EXPECT_TRUE(boxes[i].within(outer)) << "box " << i;
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(boxes[i].overlaps(boxes[j])) << "boxes " << i << " and " << j;
        }
    }
}

} // namespace

TEST(MainLayout, Nothing_overlaps_or_leaves_the_window) {
    for (const Case& each : cases()) {
        SCOPED_TRACE(testing::Message()
                     << each.client.width << "x" << each.client.height << " at " << each.dpi
                     << " dpi, list " << each.shown.playList << ", mixer " << each.shown.mixer);
        const Scale scale(each.dpi);
        const MainBoxes boxes = layoutMain(each.client, scale, each.shown, strip(scale));
        expectApart(boxesOf(boxes), {0, 0, each.client.width, each.client.height});
        for (std::size_t i = 0; i < boxes.strip.size(); ++i) {
            EXPECT_EQ(boxes.strip[i].width(), strip(scale)[i].width);
        }
        // What was asked for is there; only the mixer may take the whole stage.
        EXPECT_EQ(!boxes.mixer.empty(), each.shown.mixer);
        EXPECT_TRUE(!boxes.words.empty() || each.shown.mixer);
        EXPECT_TRUE(each.shown.mixer || boxes.playList.empty() != each.shown.playList);
        EXPECT_TRUE(boxes.words.empty() || boxes.words.height() >= scale(120));
    }
}

TEST(MainLayout, The_mixer_leaves_room_for_the_words_where_there_is_any) {
    const Scale usual(96);
    const Shown shown = {.playList = false, .mixer = true};
    const MainBoxes small = layoutMain({792, 555}, usual, shown, strip(usual));
    EXPECT_GE(small.mixer.top, small.words.bottom);
    EXPECT_FALSE(small.words.empty());
    const MainBoxes large = layoutMain({1912, 1030}, usual, shown, strip(usual));
    EXPECT_GT(large.words.height(), large.mixer.height());
    const Scale fine(144);
    EXPECT_TRUE(layoutMain({792, 555}, fine, shown, strip(fine)).words.empty());
}

TEST(MainLayout, Full_screen_shows_the_words_alone) {
    const Scale scale(96);
    const MainBoxes boxes = layoutMain({1920, 1080}, scale, {.wordsAlone = true}, strip(scale));
    EXPECT_EQ(boxes.words, (Box{0, 0, 1920, 1080}));
    EXPECT_TRUE(boxes.position.empty());
    EXPECT_THAT(boxes.strip, testing::Each(Box{}));
}

TEST(MixerLayout, Cells_lie_apart_in_rows_of_a_readable_height) {
    for (const Case& each : cases()) {
        if (!each.shown.mixer) {
            continue;
        }
        const Scale scale(each.dpi);
        const MainBoxes main = layoutMain(each.client, scale, each.shown, strip(scale));
        const MixerBoxes mixer = layoutMixer(main.mixer.size(), scale);
        SCOPED_TRACE(testing::Message()
                     << main.mixer.width() << "x" << main.mixer.height() << " at " << each.dpi);
        std::vector<Box> all;
        for (const MixerRow& row : mixer.headings) {
            all.insert(all.end(), row.begin(), row.end());
        }
        for (const MixerRow& row : mixer.channels) {
            all.insert(all.end(), row.begin(), row.end());
            EXPECT_GE(row.front().height(), scale(kSmallestRow));
        }
        expectApart(all, {0, 0, main.mixer.width(), main.mixer.height()});
    }
}

TEST(MixerLayout, A_point_finds_the_cell_that_it_lies_in) {
    const MixerBoxes boxes = layoutMixer({800, 200}, Scale(96));
    for (const MixerPlace place :
         {MixerPlace{0, MixerCell::Volume}, MixerPlace{15, MixerCell::Solo},
          MixerPlace{7, MixerCell::Chorus}}) {
        const Box& box = boxes.channels[static_cast<std::size_t>(place.channel)]
                                       [static_cast<std::size_t>(place.cell)];
        EXPECT_EQ(mixerPlaceAt(boxes, box.left, box.top), place);
        EXPECT_EQ(mixerPlaceAt(boxes, box.right - 1, box.bottom - 1), place);
    }
    const Box& name = boxes.channels[3][static_cast<std::size_t>(MixerCell::Name)];
    EXPECT_EQ(mixerPlaceAt(boxes, name.left, name.top), std::nullopt);
    EXPECT_EQ(mixerPlaceAt(boxes, -1, -1), std::nullopt);
}

TEST(MixerValues, Levels_are_kept_as_offsets_to_what_the_song_has) {
    host::ChannelActivity activity;
    EXPECT_EQ(shownValue(MixerCell::Volume, activity, {}), 100);
    activity.volume = 90;
    const auto louder = withValue(MixerCell::Volume, 120, activity, {});
    EXPECT_EQ(louder.volume, 30);
    // The song's own changes still come through.
    activity.volume = 60;
    EXPECT_EQ(shownValue(MixerCell::Volume, activity, louder), 90);
    activity.volume = 127;
    EXPECT_EQ(shownValue(MixerCell::Volume, activity, louder), 127);
    EXPECT_EQ(stepped(MixerCell::Volume, 4, activity, louder).volume, 0);
    EXPECT_EQ(withValue(MixerCell::Pan, -5, activity, {}).pan, -64);
    activity.reverb = 20;
    EXPECT_EQ(withValue(MixerCell::Reverb, 50, activity, {}).reverb, 30);
    EXPECT_EQ(withValue(MixerCell::Chorus, 50, activity, {}).chorus, 50);
}

TEST(MixerValues, Cells_are_put_back_one_by_one) {
    host::ChannelSettings settings = {.muted = true, .solo = true, .volume = 5, .pan = 6};
    EXPECT_FALSE(toggled(MixerCell::Mute, settings).muted);
    EXPECT_FALSE(asWritten(MixerCell::Solo, settings).solo);
    settings = asWritten(MixerCell::Volume, settings);
    EXPECT_EQ(settings.volume, 0);
    EXPECT_EQ(settings.pan, 6);
    EXPECT_TRUE(settings.muted);
}

TEST(WordsLayout, Rows_follow_each_other_and_letters_fit_them) {
    for (const Size place : {Size{300, 150}, Size{792, 250}, Size{540, 420}, Size{1920, 1080}}) {
        for (const int lineWidth : {0, 200, 1500, 6000}) {
            SCOPED_TRACE(testing::Message()
                         << place.width << "x" << place.height << ", lines of " << lineWidth);
            const auto [sizes, rows, width] = layoutWords(place, lineWidth);
            expectApart(
                {rows.title, rows.previous, rows.dots, rows.chords, rows.current, rows.next},
                {0, 0, place.width, place.height});
            EXPECT_LE(sizes.current * 115, rows.current.height() * 100);
            EXPECT_LE(sizes.other * 115, rows.next.height() * 100);
            EXPECT_LE(sizes.chord * 115, rows.chords.height() * 100);
            EXPECT_LE(width, place.width);
        }
    }
}

TEST(WordsLayout, Letters_grow_with_the_place_and_shrink_for_long_lines) {
    const auto size = [](Size place, int lineWidth) {
        return layoutWords(place, lineWidth).sizes.current;
    };
    EXPECT_GT(size({1920, 1080}, 1000), 2 * size({800, 450}, 1000) - 5);
    EXPECT_LT(size({800, 450}, 1500), size({800, 450}, 900));
    // However long the lines are, they are wrapped rather than made unreadable.
    EXPECT_EQ(size({800, 450}, 6000), size({800, 450}, 60000));
    EXPECT_GE(size({800, 450}, 60000), 40);
}

TEST(Speed, Percent_of_the_songs_speed_and_the_engines_percentage_mean_the_same) {
    EXPECT_EQ(speedOf(0), 100);
    EXPECT_EQ(speedOf(50), 200);
    EXPECT_EQ(speedOf(-100), 50);
    for (int speed = kSlowestSpeed; speed <= kFastestSpeed; ++speed) {
        EXPECT_EQ(speedOf(percentOf(speed)), speed);
    }
    EXPECT_EQ(percentOf(1), percentOf(kSlowestSpeed));
}
