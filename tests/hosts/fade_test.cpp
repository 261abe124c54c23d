// Straight fades as curves of whole-number slopes.
#include <gtest/gtest.h>

#include <cmath>

#include "shared/fade_curve.h"

using namespace host;

namespace {

constexpr std::int32_t kFull = 102400;

/// What the engine makes of a curve.
std::int32_t levelAt(const MMFADE& fade, std::uint32_t time) {
    int k = 0;
    while (time > fade.segmentEnd[k]) {
        ++k;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(fade.slope[k]) * time +
                                     static_cast<std::uint32_t>(fade.base[k]));
}

} // namespace

TEST(Fades, Run_straight_from_one_end_to_the_other) {
    for (const std::uint32_t length : {100u, 999u, 2048u, 3000u, 51201u, 68000u, 100000u}) {
        const std::uint32_t start = 3600000; // an hour into a song
        const MMFADE in = fadeIn(length);
        const MMFADE out = fadeOut(start, length);
        EXPECT_EQ(+in.segmentEnd[4], length);
        EXPECT_EQ(+out.segmentEnd[4], start + length);
        EXPECT_EQ(levelAt(in, length), kFull) << length;
        EXPECT_EQ(levelAt(out, 5), kFull) << length;
        EXPECT_EQ(levelAt(out, start), kFull) << length;
        EXPECT_EQ(levelAt(out, start + length), 0) << length;
        std::int32_t before = 0;
        for (std::uint32_t time = 1; time <= length; ++time) {
            const std::int32_t level = levelAt(in, time);
            ASSERT_GE(level, before) << length << " at " << time;
            ASSERT_EQ(level, kFull - levelAt(out, start + time)) << length << " at " << time;
            ASSERT_LT(std::abs(level - static_cast<double>(kFull) * time / length), kFull * 0.1)
                << length << " at " << time;
            before = level;
        }
    }
}
