// A small device: banks wait for a program, data entries go to the parameter chosen last.
#include "tests/whole/device_model.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>

namespace {

class Channel {
public:
    Channel() {
        reset();
    }

    void take(const std::vector<std::uint8_t>& message) {
        switch (message[0] & 0xF0) {
        case 0xB0:
            controller(message[1], message[2]);
            break;
        case 0xC0:
            state_["program"] = bank_ + message[1];
            break;
        case 0xD0:
            state_["pressure"] = message[1];
            break;
        case 0xE0:
            state_["bend"] = message[2] << 7 | message[1];
            break;
        default:
            break;
        }
    }

    const std::map<std::string, int>& state() const {
        return state_;
    }

private:
    void controller(int number, int value) {
        switch (number) {
        case 0:
            bank_ = (bank_ & 0x3FFF) | value << 14;
            break;
        case 32:
            bank_ = (bank_ & ~0x3F80) | value << 7;
            break;
        case 6:
            state_[parameter_ + std::to_string(high_) + "/" + std::to_string(low_)] = value;
            break;
        case 98:
        case 100:
            parameter_ = number == 100 ? "registered " : "non-registered ";
            low_ = value;
            break;
        case 99:
        case 101:
            parameter_ = number == 101 ? "registered " : "non-registered ";
            high_ = value;
            break;
        case 120:
        case 123:
            break;
        case 121:
            reset();
            break;
        default:
            state_["controller " + std::to_string(number)] = value;
            break;
        }
    }

    void reset() {
        for (const char* const name : {"1", "11", "64", "65", "66", "67"}) {
            state_["controller " + std::string(name)] = 0;
        }
        state_["bend"] = 64 << 7;
        state_["pressure"] = 0;
        high_ = low_ = 127;
    }

    std::map<std::string, int> state_;
    std::string parameter_;
    int bank_ = 0;
    int high_ = 127;
    int low_ = 127;
};

/// One line for each value of an output's channels.
std::set<std::string> linesOf(const std::vector<Sent>& log, int output) {
    std::array<Channel, 16> channels;
    for (const Sent& sent : log) {
        if (sent.output == output && sent.bytes[0] < 0xF0) {
            channels[sent.bytes[0] & 0x0F].take(sent.bytes);
        }
    }
    std::set<std::string> lines;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        for (const auto& [name, value] : channels[i].state()) {
            lines.insert("channel " + std::to_string(i) + ' ' + name + " = " +
                         std::to_string(value));
        }
    }
    return lines;
}

} // namespace

std::vector<std::string> differences(const std::vector<Sent>& log, int output, int other) {
    const std::set<std::string> one = linesOf(log, output);
    const std::set<std::string> two = linesOf(log, other);
    std::vector<std::string> lines;
    std::set_symmetric_difference(one.begin(), one.end(), two.begin(), two.end(),
                                  std::back_inserter(lines));
    return lines;
}
