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
    explicit TrackReader(MIDIOUT& player) noexcept : m_player(player) {}

    bool read(MMTRACK& track) noexcept;

private:
    std::uint8_t byteAt(std::uint64_t position) const noexcept {
        return position < m_player.fileSize ? m_player.fileData[position] : std::uint8_t{0};
    }

    /// Does not move past the end of the file.
    std::uint8_t readBounded() noexcept {
        if (m_player.readPos >= m_player.fileSize) {
            return 0;
        }
        return m_player.fileData[m_player.readPos++];
    }

    /// Moves on past the end of the file too: an event that is cut off there is kept, with zeros.
    std::uint8_t readData() noexcept {
        return byteAt(m_player.readPos++);
    }

    std::uint32_t readVariableLength() noexcept;
    std::uint8_t readStatus() noexcept;
    Outcome readEvent() noexcept;
    Outcome readMessage(std::uint8_t status) noexcept;
    Outcome readSystemExclusive() noexcept;
    Outcome readMetaEvent() noexcept;

    MIDIOUT& m_player;
    std::uint32_t m_numberLength = 0; ///< bytes of the last variable-length number
};

bool TrackReader::read(MMTRACK& track) noexcept {
    const std::uint64_t end = std::uint64_t{track.dataStart} + track.length;
    m_player.eventPos = track.eventPos;
    m_player.readPos = track.readPos;
    m_player.trackTime = track.time;
    m_player.runningStatus = track.runningStatus;
    g_lyricsRestarted = 0;
    while (m_player.readPos < end) {
        if (readEvent() == Outcome::Failed) {
            return false;
        }
    }
    track.parsed = 1;
    track.eventPos = m_player.eventPos;
    track.readPos = m_player.readPos;
    track.time = m_player.trackTime;
    track.runningStatus = m_player.runningStatus;
    return true;
}

std::uint32_t TrackReader::readVariableLength() noexcept {
    std::uint32_t value = 0;
    std::uint8_t byte = 0;
    m_numberLength = 0;
    do {
        byte = readBounded();
        value = value << 7 | (byte & kSevenBits);
        ++m_numberLength;
    } while ((byte & kMoreFollows) != 0);
    m_player.vlqLength = static_cast<std::int16_t>(m_numberLength);
    return value;
}

std::uint8_t TrackReader::readStatus() noexcept {
    const std::uint8_t byte = byteAt(m_player.readPos);
    if (byte < midi::kStatusBit && m_player.runningStatus != kNoRunningStatus) {
        return static_cast<std::uint8_t>(m_player.runningStatus);
    }
    return readBounded();
}

Outcome TrackReader::readEvent() noexcept {
    m_player.trackTime += readVariableLength();
    m_player.eventPos = m_player.readPos;
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
    return outcome == Outcome::Done ? doneIf(m_player.readPos > m_player.eventPos) : outcome;
}

Outcome TrackReader::readMessage(std::uint8_t status) noexcept {
    const int dataBytes = dataBytesOf(status);
    if (dataBytes < 0) {
        return failWith(ENGINE_ERR_STATUS);
    }
    m_player.runningStatus = status;
    const std::uint8_t data1 = dataBytes >= 1 ? readData() : std::uint8_t{0};
    const std::uint8_t data2 = dataBytes >= 2 ? readData() : std::uint8_t{0};
    if (g_ccLyrics != 0 && (status & midi::kKindMask) == midi::kController &&
        data1 == midi::kSyllable) {
        takeSyllable(m_player, data2);
    }
    return doneIf(appendEvent(m_player, {status, data1, data2, 0, m_player.trackTime}));
}

Outcome TrackReader::readSystemExclusive() noexcept {
    std::uint32_t lengthBytes = 1;
    std::uint32_t length = byteAt(m_player.readPos);
    if (length >= kMoreFollows) {
        const std::uint8_t second = byteAt(std::uint64_t{m_player.readPos} + 1);
        if (second >= kMoreFollows) {
            return failWith(ENGINE_ERR_SYSEX);
        }
        length = (length & kSevenBits) << 7 | second;
        lengthBytes = 2;
    }
    const std::uint64_t last = std::uint64_t{m_player.readPos} + lengthBytes + length - 1;
    if (length == 0 || byteAt(last) != midi::kEndOfExclusive) {
        return failWith(ENGINE_ERR_SYSEX);
    }
    m_player.readPos += lengthBytes;
    const bool taken = takeSystemExclusive(m_player, m_player.fileData + m_player.readPos,
                                           static_cast<std::int32_t>(length));
    m_player.readPos += length;
    return doneIf(taken);
}

Outcome TrackReader::readMetaEvent() noexcept {
    const std::uint32_t start = m_player.readPos;
    const std::uint8_t type = readBounded();
    const std::uint64_t length = readVariableLength();
    const std::uint64_t headSize = std::uint64_t{1} + m_numberLength;
    if (start + headSize + length > m_player.fileSize) {
        return Outcome::Failed;
    }
    const std::uint64_t seen = std::min<std::uint64_t>(headSize + length, kMaxMetaSize);
    const std::uint64_t dataSeen = seen > headSize ? seen - headSize : 0;
    const bool taken = takeMetaEvent(m_player, type, m_player.fileData + start + headSize,
                                     static_cast<std::int32_t>(dataSeen));
    m_player.readPos = static_cast<std::uint32_t>(start + headSize + length);
    return doneIf(taken);
}

} // namespace

bool parseTrack(MIDIOUT& player, MMTRACK& track) noexcept {
    return TrackReader(player).read(track);
}
