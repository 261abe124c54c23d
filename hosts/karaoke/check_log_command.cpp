// karaoke check-log: whether a MIDI log leaves anything sounding, and whether its messages are whole.
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <vector>

#include "karaoke/commands.h"
#include "shared/error_texts.h"
#include "shared/sounding.h"

namespace karaoke {

namespace {

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kEndOfExclusive = 0xF7;

/// One line of a log.
struct Logged {
    std::vector<std::uint8_t> bytes;
    int output = 0;
};

/// Reads "12.000 90 3C 64", behind it " ; 1" when several outputs are logged.
bool readLine(const std::string& line, Logged& message) {
    std::istringstream words(line);
    double time = 0;
    std::string word;
    if (!(words >> time)) {
        return false;
    }
    while (words >> word && word != ";") {
        std::size_t used = 0;
        const unsigned long byte = word.size() == 2 ? std::stoul(word, &used, 16) : 256;
        if (used != 2 || byte > 0xFF) {
            return false;
        }
        message.bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    return !message.bytes.empty() && (word != ";" || static_cast<bool>(words >> message.output));
}

std::size_t lengthOf(std::uint8_t status) {
    const int kind = status & 0xF0;
    return kind == 0xC0 || kind == 0xD0 ? 2 : 3;
}

/// What is wrong with a message; empty = nothing.
std::string faultOf(const std::vector<std::uint8_t>& bytes) {
    if (bytes[0] == kSystemExclusive) {
        return bytes.size() > 1 && bytes.back() == kEndOfExclusive ? ""
                                                                   : "exclusive without its end";
    }
    if (bytes[0] < kStatusBit || bytes[0] > kSystemExclusive ||
        bytes.size() != lengthOf(bytes[0])) {
        return "no whole message";
    }
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        if (bytes[i] >= kStatusBit) {
            return "data byte above 127";
        }
    }
    return "";
}

Logged parsed(const std::string& file, std::size_t number, const std::string& line) {
    Logged message;
    bool read = false;
    try {
        read = readLine(line, message);
    } catch (const std::logic_error&) {
        read = false; // no number where one must stand
    }
    if (!read) {
        throw host::HostError(file + ": line " + std::to_string(number) + " is none of a MIDI log");
    }
    return message;
}

} // namespace

int runCheckLog(const std::string& file) {
    std::ifstream log(file);
    if (!log) {
        throw host::HostError(file + ": cannot be read");
    }
    host::Sounding sounding;
    std::size_t count = 0;
    std::size_t faults = 0;
    for (std::string line; std::getline(log, line);) {
        const Logged message = parsed(file, ++count, line);
        const std::string fault = faultOf(message.bytes);
        if (!fault.empty()) {
            std::printf("line %zu: %s\n", count, fault.c_str());
            ++faults;
        }
        sounding.take(message.output, message.bytes);
    }
    const std::vector<std::string> left = sounding.list();
    for (const std::string& what : left) {
        std::printf("still sounding: %s\n", what.c_str());
    }
    std::printf("%zu messages, %zu malformed, %zu notes and pedals left\n", count, faults,
                left.size());
    return faults + left.size() == 0 ? 0 : 1;
}

} // namespace karaoke
