// The track parser: delta times, running status and messages of one track chunk. Every byte beyond the end
// of the file reads as 0.
#include <algorithm>

#include "corvmo32_errors.h"
#include "engine/globals.h"
#include "engine/midi.h"
#include "song/song.h"

namespace {

constexpr std::int16_t kNoRunningStatus = -1;
constexpr std::uint8_t kMoreFollows = 0x80; ///< top bit of a byte of a variable-length number
constexpr std::uint8_t kSevenBits = 0x7F;
constexpr std::int32_t kMaxMetaSize = 32767; ///< a meta event's size is a signed 16-bit number

enum class Outcome { Done, Failed };

Outcome failWith(std::uint32_t error) noexcept {
    g_lastError.store(error);
    return Outcome::Failed;
}

Outcome doneIf(bool done) noexcept {
    return done ? Outcome::Done : Outcome::Failed;
}

/// How many data bytes follow a status, -1 for a byte that is no status of a message.
int dataBytesOf(std::uint8_t status) noexcept {
    switch (status) {
    case midi::kTimeCode:
    case midi::kSongSelect:
        return 1;
    case midi::kSongPosition:
        return 2;
    case midi::kTuneRequest:
    case midi::kTimingClock:
    case midi::kStart:
    case midi::kContinue:
    case midi::kStop:
    case midi::kActiveSensing:
        return 0;
    default:
        break;
    }
    switch (status & midi::kKindMask) {
    case midi::kNoteOff:
    case midi::kNoteOn:
    case midi::kPolyPressure:
    case midi::kController:
    case midi::kPitchBend:
        return 2;
    case midi::kProgramChange:
    case midi::kChannelPressure:
        return 1;
    default:
        return -1;
    }
}

/// Reads one track. The position and state live in the player's record, where the tables' writers look.
class TrackReader {
public:
    explicit TrackReader(MIDIOUT& player) noexcept : player_(player) {}

    bool read(MMTRACK& track) noexcept;

private:
    std::uint8_t byteAt(std::uint64_t position) const noexcept {
        return position < player_.fileSize ? player_.fileData[position] : std::uint8_t{0};
    }

    /// Does not move past the end of the file.
    std::uint8_t readBounded() noexcept {
        if (player_.readPos >= player_.fileSize) {
            return 0;
        }
        return player_.fileData[player_.readPos++];
    }

    /// Moves on past the end of the file too: an event that is cut off there is kept, with zeros.
    std::uint8_t readData() noexcept {
        return byteAt(player_.readPos++);
    }

    std::uint32_t readVariableLength() noexcept;
    std::uint8_t readStatus() noexcept;
    Outcome readEvent() noexcept;
    Outcome readMessage(std::uint8_t status) noexcept;
    Outcome readSystemExclusive() noexcept;
    Outcome readMetaEvent() noexcept;

    MIDIOUT& player_;
    std::uint32_t numberLength_ = 0; ///< bytes of the last variable-length number
};

bool TrackReader::read(MMTRACK& track) noexcept {
    const std::uint64_t end = std::uint64_t{track.dataStart} + track.length;
    player_.eventPos = track.eventPos;
    player_.readPos = track.readPos;
    player_.trackTime = track.time;
    player_.runningStatus = track.runningStatus;
    g_lyricsRestarted = 0;
    while (player_.readPos < end) {
        if (readEvent() == Outcome::Failed) {
            return false;
        }
    }
    track.parsed = 1;
    track.eventPos = player_.eventPos;
    track.readPos = player_.readPos;
    track.time = player_.trackTime;
    track.runningStatus = player_.runningStatus;
    return true;
}

std::uint32_t TrackReader::readVariableLength() noexcept {
    std::uint32_t value = 0;
    std::uint8_t byte = 0;
    numberLength_ = 0;
    do {
        byte = readBounded();
        value = value << 7 | (byte & kSevenBits);
        ++numberLength_;
    } while ((byte & kMoreFollows) != 0);
    player_.vlqLength = static_cast<std::int16_t>(numberLength_);
    return value;
}

std::uint8_t TrackReader::readStatus() noexcept {
    const std::uint8_t byte = byteAt(player_.readPos);
    if (byte < midi::kStatusBit && player_.runningStatus != kNoRunningStatus) {
        return static_cast<std::uint8_t>(player_.runningStatus);
    }
    return readBounded();
}

Outcome TrackReader::readEvent() noexcept {
    player_.trackTime += readVariableLength();
    player_.eventPos = player_.readPos;
    const std::uint8_t status = readStatus();
    Outcome outcome = Outcome::Failed;
    switch (status) {
    case midi::kSystemExclusive:
    case midi::kEndOfExclusive:
        outcome = readSystemExclusive();
        break;
    case midi::kMetaEvent:
        outcome = readMetaEvent();
        break;
    default:
        outcome = readMessage(status);
        break;
    }
    // A running status without data bytes would stand still for ever.
    return outcome == Outcome::Done ? doneIf(player_.readPos > player_.eventPos) : outcome;
}

Outcome TrackReader::readMessage(std::uint8_t status) noexcept {
    const int dataBytes = dataBytesOf(status);
    if (dataBytes < 0) {
        return failWith(ENGINE_ERR_STATUS);
    }
    player_.runningStatus = status;
    const std::uint8_t data1 = dataBytes >= 1 ? readData() : std::uint8_t{0};
    const std::uint8_t data2 = dataBytes >= 2 ? readData() : std::uint8_t{0};
    if (g_ccLyrics != 0 && (status & midi::kKindMask) == midi::kController &&
        data1 == midi::kSyllable) {
        takeSyllable(player_, data2);
    }
    return doneIf(appendEvent(player_, {status, data1, data2, 0, player_.trackTime}));
}

Outcome TrackReader::readSystemExclusive() noexcept {
    std::uint32_t lengthBytes = 1;
    std::uint32_t length = byteAt(player_.readPos);
    if (length >= kMoreFollows) {
        const std::uint8_t second = byteAt(std::uint64_t{player_.readPos} + 1);
        if (second >= kMoreFollows) {
            return failWith(ENGINE_ERR_SYSEX);
        }
        length = (length & kSevenBits) << 7 | second;
        lengthBytes = 2;
    }
    const std::uint64_t last = std::uint64_t{player_.readPos} + lengthBytes + length - 1;
    if (length == 0 || byteAt(last) != midi::kEndOfExclusive) {
        return failWith(ENGINE_ERR_SYSEX);
    }
    player_.readPos += lengthBytes;
    const bool taken = takeSystemExclusive(player_, player_.fileData + player_.readPos,
                                           static_cast<std::int32_t>(length));
    player_.readPos += length;
    return doneIf(taken);
}

Outcome TrackReader::readMetaEvent() noexcept {
    const std::uint32_t start = player_.readPos;
    const std::uint8_t type = readBounded();
    const std::uint64_t length = readVariableLength();
    const std::uint64_t headSize = std::uint64_t{1} + numberLength_;
    if (start + headSize + length > player_.fileSize) {
        return Outcome::Failed;
    }
    const std::uint64_t seen = std::min<std::uint64_t>(headSize + length, kMaxMetaSize);
    const std::uint64_t dataSeen = seen > headSize ? seen - headSize : 0;
    const bool taken = takeMetaEvent(player_, type, player_.fileData + start + headSize,
                                     static_cast<std::int32_t>(dataSeen));
    player_.readPos = static_cast<std::uint32_t>(start + headSize + length);
    return doneIf(taken);
}

} // namespace

bool parseTrack(MIDIOUT& player, MMTRACK& track) noexcept {
    return TrackReader(player).read(track);
}
