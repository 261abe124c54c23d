// Builds Standard MIDI Files for tests.
#include "tests/support/song_builder.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

void appendNumber(Bytes& bytes, std::uint32_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void appendText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

std::vector<std::string> written;

} // namespace

Bytes variableLength(std::uint32_t value) {
    Bytes bytes{static_cast<std::uint8_t>(value & 0x7F)};
    while ((value >>= 7) != 0) {
        bytes.insert(bytes.begin(), static_cast<std::uint8_t>((value & 0x7F) | 0x80));
    }
    return bytes;
}

TrackBuilder& TrackBuilder::at(std::uint32_t tick) {
    if (tick < written_) {
        throw std::invalid_argument("a track's ticks must not go back");
    }
    tick_ = tick;
    return *this;
}

void TrackBuilder::delta() {
    const Bytes number = variableLength(tick_ - written_);
    data_.insert(data_.end(), number.begin(), number.end());
    written_ = tick_;
}

void TrackBuilder::append(std::initializer_list<int> bytes) {
    for (const int byte : bytes) {
        data_.push_back(static_cast<std::uint8_t>(byte));
    }
}

TrackBuilder& TrackBuilder::event(std::initializer_list<int> bytes) {
    delta();
    append(bytes);
    return *this;
}

TrackBuilder& TrackBuilder::raw(std::initializer_list<int> bytes) {
    append(bytes);
    return *this;
}

TrackBuilder& TrackBuilder::noteOn(int channel, int key, int velocity) {
    return event({0x90 | channel, key, velocity});
}

TrackBuilder& TrackBuilder::noteOff(int channel, int key) {
    return event({0x80 | channel, key, 0x40});
}

TrackBuilder& TrackBuilder::note(int channel, int key, std::uint32_t length, int velocity) {
    noteOn(channel, key, velocity);
    return at(tick_ + length).noteOff(channel, key);
}

TrackBuilder& TrackBuilder::controller(int channel, int number, int value) {
    return event({0xB0 | channel, number, value});
}

TrackBuilder& TrackBuilder::program(int channel, int number) {
    return event({0xC0 | channel, number});
}

TrackBuilder& TrackBuilder::tempo(std::uint32_t microseconds) {
    return event({0xFF, 0x51, 3, static_cast<int>(microseconds >> 16),
                  static_cast<int>(microseconds >> 8 & 0xFF),
                  static_cast<int>(microseconds & 0xFF)});
}

TrackBuilder& TrackBuilder::timeSignature(int beats, int power) {
    return event({0xFF, 0x58, 4, beats, power, 24, 8});
}

TrackBuilder& TrackBuilder::meta(int type, std::string_view data) {
    event({0xFF, type});
    const Bytes length = variableLength(static_cast<std::uint32_t>(data.size()));
    data_.insert(data_.end(), length.begin(), length.end());
    appendText(data_, data);
    return *this;
}

TrackBuilder& TrackBuilder::text(std::string_view words) {
    return meta(0x01, words);
}

TrackBuilder& TrackBuilder::lyric(std::string_view words) {
    return meta(0x05, words);
}

TrackBuilder& TrackBuilder::marker(std::string_view name) {
    return meta(0x06, name);
}

TrackBuilder& TrackBuilder::systemExclusive(const Bytes& body) {
    event({0xF0});
    const Bytes length = variableLength(static_cast<std::uint32_t>(body.size() + 1));
    data_.insert(data_.end(), length.begin(), length.end());
    data_.insert(data_.end(), body.begin(), body.end());
    data_.push_back(0xF7);
    return *this;
}

TrackBuilder& TrackBuilder::systemExclusive(std::initializer_list<int> body) {
    Bytes bytes;
    for (const int byte : body) {
        bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    return systemExclusive(bytes);
}

TrackBuilder& TrackBuilder::karaoke(int type, std::string_view text) {
    Bytes body{0x00, 0x20, 0x24, 0x00, static_cast<std::uint8_t>(type)};
    appendText(body, text);
    return systemExclusive(body);
}

TrackBuilder& SongBuilder::track() {
    return tracks_.emplace_back();
}

Bytes SongBuilder::bytes() const {
    Bytes file;
    appendText(file, "MThd");
    appendNumber(file, 6, 4);
    appendNumber(file, static_cast<std::uint32_t>(format_), 2);
    appendNumber(file, static_cast<std::uint32_t>(tracks_.size()), 2);
    appendNumber(file, static_cast<std::uint32_t>(division_), 2);
    for (const TrackBuilder& track : tracks_) {
        appendText(file, "MTrk");
        appendNumber(file, static_cast<std::uint32_t>(track.data().size()), 4);
        file.insert(file.end(), track.data().begin(), track.data().end());
    }
    return file;
}

std::string SongBuilder::write() const {
    return writeFile(bytes());
}

std::string writeFile(const Bytes& bytes) {
    // Several builds may run the same test at the same time.
    static const auto run = std::chrono::system_clock::now().time_since_epoch().count();
    std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    // Tests with parameters have a slash in their names.
    std::replace(test.begin(), test.end(), '/', '_');
    std::string name = ::testing::TempDir() + "corvmo_" + test + "_" + std::to_string(run) + "_" +
                       std::to_string(written.size()) + ".mid";
    std::ofstream file(name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    written.push_back(name);
    if (!file) {
        throw std::runtime_error("cannot write " + name);
    }
    return name;
}

void removeWrittenFiles() {
    for (const std::string& name : written) {
        std::error_code ignored;
        std::filesystem::remove(name, ignored);
    }
    written.clear();
}
