// Builds Standard MIDI Files for tests, event by event, at absolute ticks.
#pragma once

#include <cstdint>
#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// One track chunk. Ticks must not go back.
class TrackBuilder {
public:
    /// Where the following events stand.
    TrackBuilder& at(std::uint32_t tick);

    /// Any bytes as one event, its delta time before them.
    TrackBuilder& event(std::initializer_list<int> bytes);
    /// Bytes as they are, without a delta time.
    TrackBuilder& raw(std::initializer_list<int> bytes);

    TrackBuilder& noteOn(int channel, int key, int velocity = 100);
    TrackBuilder& noteOff(int channel, int key);
    /// Note-on here and note-off so many ticks later; the position moves there.
    TrackBuilder& note(int channel, int key, std::uint32_t length, int velocity = 100);
    TrackBuilder& controller(int channel, int number, int value);
    TrackBuilder& program(int channel, int number);
    TrackBuilder& tempo(std::uint32_t microseconds);
    /// Beats in a bar and the power of two of the beat's note value.
    TrackBuilder& timeSignature(int beats, int power);
    TrackBuilder& meta(int type, std::string_view data);
    TrackBuilder& text(std::string_view words);
    TrackBuilder& lyric(std::string_view words);
    TrackBuilder& marker(std::string_view name);
    /// The bytes after F0; the closing F7 is added.
    TrackBuilder& systemExclusive(const Bytes& body);
    TrackBuilder& systemExclusive(std::initializer_list<int> body);
    /// A karaoke text message of a type.
    TrackBuilder& karaoke(int type, std::string_view text = {});

    const Bytes& data() const {
        return data_;
    }

private:
    void delta();
    void append(std::initializer_list<int> bytes);

    Bytes data_;
    std::uint32_t tick_ = 0;
    std::uint32_t written_ = 0;
};

/// A whole file.
class SongBuilder {
public:
    explicit SongBuilder(int division = 480, int format = 1)
        : division_(division), format_(format) {}

    /// A new track; the reference stays valid.
    TrackBuilder& track();
    Bytes bytes() const;
    /// Writes the file to a name of its own in the tests' folder and answers the name.
    std::string write() const;

private:
    int division_;
    int format_;
    std::deque<TrackBuilder> tracks_;
};

/// Writes any bytes to a file of their own and answers its name; the fixture removes it.
std::string writeFile(const Bytes& bytes);
void removeWrittenFiles();

/// A variable-length number.
Bytes variableLength(std::uint32_t value);
