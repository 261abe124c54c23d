// Replays a log as a device would, as far as its notes and pedals go.
#include "tests/support/sounding.h"

#include <map>
#include <set>

namespace {

struct Channel {
    std::set<int> keys;
    std::set<int> held; ///< released while the sustain pedal was down
    bool sustain = false;
    bool sostenuto = false;

    void releasePedals() {
        sustain = false;
        sostenuto = false;
        held.clear();
    }

    void release(int key) {
        if (keys.erase(key) != 0 && sustain) {
            held.insert(key);
        }
    }

    void controller(int number, int value) {
        switch (number) {
        case 64:
            sustain = value >= 64;
            if (!sustain) {
                held.clear();
            }
            break;
        case 66:
            sostenuto = value >= 64;
            break;
        case 120:
            keys.clear();
            held.clear();
            break;
        case 121:
            releasePedals();
            break;
        case 123:
            for (const int key : std::set<int>(keys)) {
                release(key);
            }
            break;
        default:
            break;
        }
    }

    void take(const std::vector<std::uint8_t>& bytes) {
        const int kind = bytes[0] & 0xF0;
        if (kind == 0x90 && bytes[2] != 0) {
            keys.insert(bytes[1]);
        } else if (kind == 0x90 || kind == 0x80) {
            release(bytes[1]);
        } else if (kind == 0xB0) {
            controller(bytes[1], bytes[2]);
        }
    }
};

} // namespace

std::vector<std::string> stillSounding(const std::vector<Sent>& log) {
    std::map<std::pair<int, int>, Channel> channels;
    for (const Sent& sent : log) {
        if (sent.bytes[0] < 0xF0) {
            channels[{sent.output, sent.bytes[0] & 0x0F}].take(sent.bytes);
        }
    }
    std::vector<std::string> sounding;
    for (const auto& [place, channel] : channels) {
        const std::string where = "output " + std::to_string(place.first) + " channel " +
                                  std::to_string(place.second) + ": ";
        for (const auto* keys : {&channel.keys, &channel.held}) {
            for (const int key : *keys) {
                sounding.push_back(where + "note " + std::to_string(key));
            }
        }
        if (channel.sustain) {
            sounding.push_back(where + "sustain pedal");
        }
        if (channel.sostenuto) {
            sounding.push_back(where + "sostenuto pedal");
        }
    }
    return sounding;
}
