// Songs by chance, the same for the same seed.
#include "tests/whole/random_song.h"

namespace {

constexpr int kEvents = 400;
constexpr int kChannels[] = {0, 3, 9, 15};
constexpr int kControllers[] = {1,  2,  4,  5,  7,  8,  10, 11, 12, 13, 16, 17, 18, 19, 33, 34, 36,
                                37, 40, 43, 44, 45, 64, 65, 66, 67, 68, 69, 84, 91, 92, 93, 94, 95};
constexpr int kNonRegistered[] = {8, 9, 10, 32, 33, 99, 100, 102};

template <std::size_t Count>
int oneOf(std::mt19937& random, const int (&values)[Count]) {
    return values[static_cast<std::size_t>(anyOf(random, 0, Count - 1))];
}

/// Writes messages with values by chance.
class Writer {
public:
    Writer(TrackBuilder& track, std::mt19937& random) : track_(track), random_(random) {}

    void controllers(int channel, std::initializer_list<int> numbers) {
        for (const int number : numbers) {
            track_.controller(channel, number, data());
        }
    }

    void program(int channel) {
        controllers(channel, {0, 32});
        track_.program(channel, data());
    }

    void parameter(int channel, int highController, int low) {
        track_.controller(channel, highController, highController == 99 ? 1 : 0);
        track_.controller(channel, highController - 1, low);
        controllers(channel, {6});
    }

    void bendAndPressure(int channel) {
        track_.event({0xE0 | channel, data(), data()}).event({0xD0 | channel, data()});
    }

    void note(int channel, int velocity) {
        track_.noteOn(channel, anyOf(random_, 60, 63), velocity);
    }

    void everything(int channel) {
        program(channel);
        bendAndPressure(channel);
        for (const int number : kControllers) {
            controllers(channel, {number});
        }
        for (const int low : {0, 1, 2}) {
            parameter(channel, 101, low);
        }
        for (const int low : kNonRegistered) {
            parameter(channel, 99, low);
        }
    }

    void anything(int channel) {
        switch (anyOf(random_, 0, 9)) {
        case 0:
            return program(channel);
        case 1:
            return parameter(channel, 101, anyOf(random_, 0, 2));
        case 2:
            return parameter(channel, 99, oneOf(random_, kNonRegistered));
        case 3:
            return bendAndPressure(channel);
        case 4:
        case 5:
            return controllers(channel, {oneOf(random_, kControllers)});
        case 6:
        case 7:
            return note(channel, 0);
        default:
            return note(channel, data());
        }
    }

private:
    int data() {
        return anyOf(random_, 0, 127);
    }

    TrackBuilder& track_;
    std::mt19937& random_;
};

} // namespace

int anyOf(std::mt19937& random, int first, int last) {
    // The standard's distributions differ from library to library.
    return first + static_cast<int>(random() % static_cast<unsigned>(last - first + 1));
}

SongBuilder randomSong(std::mt19937& random, bool withTempo) {
    SongBuilder song(kRandomSongDivision);
    TrackBuilder& track = song.track();
    Writer writer(track, random);
    for (const int channel : kChannels) {
        writer.everything(channel);
    }
    std::uint32_t tick = 0;
    for (int i = 0; i < kEvents; ++i) {
        if (i % 40 == 0) {
            track.timeSignature(anyOf(random, 1, 9), anyOf(random, 0, 4));
            if (withTempo) {
                track.tempo(static_cast<std::uint32_t>(anyOf(random, 100000, 900000)));
            }
        }
        track.at(tick += static_cast<std::uint32_t>(anyOf(random, 0, 9)));
        writer.anything(oneOf(random, kChannels));
    }
    track.at(tick + 50).noteOn(0, 1);
    return song;
}
