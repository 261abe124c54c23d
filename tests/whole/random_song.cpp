// Songs by chance, the same for the same seed.
#include "tests/whole/random_song.h"

namespace {

constexpr int kEvents = 400;
constexpr int kControllers[] = {1,  2,  4,  5,  7,  8,  10, 11, 12, 13, 16, 17, 18, 19, 33, 34, 36,
                                37, 40, 43, 44, 45, 64, 65, 66, 67, 68, 69, 84, 91, 92, 93, 94, 95};
constexpr int kChannels[] = {0, 3, 9, 15};

class Writer {
public:
    Writer(TrackBuilder& track, std::mt19937& random) : track_(track), random_(random) {}

    void bankAndProgram(int channel) {
        track_.controller(channel, 0, data())
            .controller(channel, 32, data())
            .program(channel, data());
    }

    void registered(int channel, int low) {
        track_.controller(channel, 101, 0)
            .controller(channel, 100, low)
            .controller(channel, 6, data());
    }

    void nonRegistered(int channel, int low) {
        track_.controller(channel, 99, 1)
            .controller(channel, 98, low)
            .controller(channel, 6, data());
    }

    void controller(int channel, int number) {
        track_.controller(channel, number, data());
    }

    void bendAndPressure(int channel) {
        track_.event({0xE0 | channel, data(), data()}).event({0xD0 | channel, data()});
    }

    void everything(int channel) {
        bankAndProgram(channel);
        bendAndPressure(channel);
        for (const int number : kControllers) {
            controller(channel, number);
        }
        for (const int low : {0, 1, 2}) {
            registered(channel, low);
        }
        for (const int low : {8, 9, 10, 32, 33, 99, 100, 102}) {
            nonRegistered(channel, low);
        }
    }

    void anything(int channel) {
        switch (anyOf(random_, 0, 9)) {
        case 0:
            return bankAndProgram(channel);
        case 1:
            return registered(channel, anyOf(random_, 0, 2));
        case 2:
            return nonRegistered(channel, anyOf(random_, 8, 10));
        case 3:
            return bendAndPressure(channel);
        case 4:
        case 5:
        case 6:
            return controller(
                channel, kControllers[static_cast<std::size_t>(
                             anyOf(random_, 0, static_cast<int>(std::size(kControllers)) - 1))]);
        case 7:
            track_.noteOff(channel, anyOf(random_, 60, 63));
            return;
        default:
            track_.noteOn(channel, anyOf(random_, 60, 63), anyOf(random_, 0, 127));
            return;
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
        writer.anything(kChannels[static_cast<std::size_t>(anyOf(random, 0, 3))]);
    }
    track.at(tick + 50).noteOn(0, 1);
    return song;
}
