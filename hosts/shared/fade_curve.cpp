// Straight fades. A slope of a whole number of steps a millisecond rarely reaches the end level, so that two
// neighbouring slopes take turns.
#include "shared/fade_curve.h"

#include <array>

namespace host {

namespace {

constexpr int kSegments = 5;
constexpr int kSlopedSegments = 4;

/// Draws a curve segment by segment.
class CurvePen {
public:
    CurvePen(MMFADE& fade, std::int32_t level) : m_fade(fade), m_level(level) {}

    void segment(std::uint32_t length, std::int32_t slope) {
        // The engine's line is given by its level at time 0, in arithmetic that wraps.
        const std::uint32_t offset = static_cast<std::uint32_t>(slope) * m_time;
        m_time += length;
        m_fade.segmentEnd[m_next] = m_time;
        m_fade.slope[m_next] = slope;
        m_fade.base[m_next] =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(m_level) - offset);
        m_level += slope * static_cast<std::int32_t>(length);
        ++m_next;
    }

private:
    MMFADE& m_fade;
    std::int32_t m_level;
    std::uint32_t m_time = 0;
    int m_next = 0;
};

static_assert(kSegments == 1 + kSlopedSegments);

/// Four segments across a range of levels.
void slopeAcross(CurvePen& pen, std::uint32_t milliseconds, std::int32_t range, int direction) {
    const std::uint32_t gentle = static_cast<std::uint32_t>(range) / milliseconds;
    const std::uint32_t steepTime = static_cast<std::uint32_t>(range) % milliseconds;
    const std::uint32_t gentleTime = milliseconds - steepTime;
    const auto gentleSlope = static_cast<std::int32_t>(gentle) * direction;
    const std::array<std::uint32_t, 2> steep = {steepTime / 2, steepTime - steepTime / 2};
    const std::array<std::uint32_t, 2> rest = {gentleTime / 2, gentleTime - gentleTime / 2};
    for (std::size_t turn = 0; turn < steep.size(); ++turn) {
        pen.segment(steep[turn], gentleSlope + direction);
        pen.segment(rest[turn], gentleSlope);
    }
}

} // namespace

MMFADE fadeIn(std::uint32_t milliseconds) {
    MMFADE fade{};
    CurvePen pen(fade, 0);
    slopeAcross(pen, milliseconds, kFullLevel, 1);
    pen.segment(0, 0);
    return fade;
}

MMFADE fadeOut(std::uint32_t start, std::uint32_t milliseconds, std::int32_t level) {
    MMFADE fade{};
    CurvePen pen(fade, level);
    pen.segment(start, 0);
    slopeAcross(pen, milliseconds, level, -1);
    return fade;
}

} // namespace host
