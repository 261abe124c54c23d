// A small device: banks wait for a program, data entries go to the parameter chosen last.
#include "tests/whole/device_model.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

namespace {

class Channel {
public:
    void take(const std::vector<std::uint8_t>& message) {
        switch (message[0] & 0xF0) {
        case 0xB0:
            controller(message[1], message[2]);
            break;
        case 0xC0:
            state_["program"] = bankMsb_ << 16 | bankLsb_ << 8 | message[1];
            break;
        case 0xD0:
            state_["pressure"] = message[1];
            break;
        case 0xE0:
            state_["bend"] = message[2] << 8 | message[1];
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
        if (number == 0) {
            bankMsb_ = value;
        } else if (number == 32) {
            bankLsb_ = value;
        } else if (number >= 98 && number <= 101) {
            registered_ = number >= 100;
            (number % 2 == 0 ? low_ : high_) = value;
        } else if (number == 6) {
            const std::string kind = registered_ ? "registered " : "non-registered ";
            state_[kind + std::to_string(high_ << 8 | low_)] = value;
        } else if (number == 121) {
            for (const char* const reset :
                 {"controller 1", "controller 11", "controller 64", "bend"}) {
                state_[reset] = 0;
            }
            low_ = high_ = 127;
        } else if (number < 120) {
            state_["controller " + std::to_string(number)] = value;
        }
    }

    std::map<std::string, int> state_{
        {"bend", 0}, {"controller 1", 0}, {"controller 11", 0}, {"controller 64", 0}};
    int bankMsb_ = 0;
    int bankLsb_ = 0;
    bool registered_ = false;
    int high_ = 127;
    int low_ = 127;
};

/// One line for each value of an output's channels.
std::set<std::string> linesOf(const std::vector<Sent>& log, int output) {
    Channel channels[16];
    for (const Sent& sent : log) {
        if (sent.output == output && sent.bytes[0] < 0xF0) {
            channels[sent.bytes[0] & 0x0F].take(sent.bytes);
        }
    }
    std::set<std::string> lines;
    for (const Channel& channel : channels) {
        const std::string number = "channel " + std::to_string(&channel - channels) + ' ';
        for (const auto& [name, value] : channel.state()) {
            lines.insert(number + name + " = " + std::to_string(value));
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
