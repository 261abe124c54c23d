// From the options of `karaoke play` to a plan for one song.
#include "karaoke/play_plan.h"

#include "shared/error_texts.h"

namespace karaoke {

namespace {

std::string nameOf(const SongPlace& place) {
    return (place.isBar ? "bar " : "tick ") + std::to_string(place.number);
}

/// Finds places in a song.
class Places {
public:
    explicit Places(const host::Song& song) : m_song(song) {}

    std::uint32_t start(const SongPlace& place) const {
        const std::uint32_t tick = tickOf(place);
        if (tick != 0 && tick >= m_song.endTick) {
            throw host::SongError(m_song.path, nameOf(place) + " lies behind the song's end, " +
                                                   nameOf(last(place)));
        }
        return tick;
    }

    host::PlayRange range(const RangeWish& wish) const {
        const std::uint32_t from = start(wish.start);
        const std::uint32_t end = tickOf(wish.end);
        if (end != 0 && end <= from) {
            throw host::SongError(m_song.path, "the range from " + nameOf(wish.start) + " to " +
                                                   nameOf(wish.end) + " ends before it begins");
        }
        return {from, end, wish.passes};
    }

private:
    std::uint32_t tickOf(const SongPlace& place) const {
        return place.isBar ? m_song.bars.tickOf(place.number) : place.number;
    }
    SongPlace last(const SongPlace& like) const {
        return {like.isBar, like.isBar ? m_song.bars.at(m_song.endTick).bar : m_song.endTick};
    }

    const host::Song& m_song;
};

} // namespace

host::PlayPlan planOf(const PlayOptions& options, std::uint32_t device) {
    host::PlayPlan plan;
    for (const DrumReplacement& drum : options.drums) {
        plan.drums.push_back(
            {static_cast<std::int8_t>(drum.from), static_cast<std::int8_t>(drum.to)});
    }
    plan.fadeIn = options.fadeIn;
    plan.fadeOut = options.fadeOut;
    plan.metronome = options.metronome;
    plan.metronomeDevice = device;
    return plan;
}

void planRanges(host::PlayPlan& plan, const PlayOptions& options, const host::Song& song) {
    const Places places(song);
    plan.from = places.start(options.from);
    for (const RangeWish& wish : options.loops) {
        plan.ranges.push_back(places.range(wish));
    }
    if (options.practice) {
        const PracticeWish& wish = *options.practice;
        plan.practice = {places.range(wish.range), wish.start, wish.step, wish.limit};
    }
}

} // namespace karaoke
