// One event of a track as its bytes stand.
#include "prepare/raw_event.h"

namespace host {

namespace {

constexpr std::uint8_t kSevenBits = 0x7F;
constexpr std::size_t kLongestNumber = 3; ///< bytes of a number that is believed in a damaged track
constexpr int kRow = 12;                  ///< so many events in a row are no accident
constexpr int kRowAtEnd = 4;              ///< enough when the track ends exactly behind them

constexpr std::uint8_t kTimeCode = 0xF1;
constexpr std::uint8_t kSongPosition = 0xF2;
constexpr std::uint8_t kSongSelect = 0xF3;
constexpr std::uint8_t kTuneRequest = 0xF6;
constexpr std::uint8_t kTimingClock = 0xF8;
constexpr std::uint8_t kStart = 0xFA;
constexpr std::uint8_t kContinue = 0xFB;
constexpr std::uint8_t kStop = 0xFC;
constexpr std::uint8_t kActiveSensing = 0xFE;
constexpr std::uint8_t kProgramChange = 0xC0;
constexpr std::uint8_t kChannelPressure = 0xD0;

/// How many data bytes follow a status, -1 for a byte that is no status of a message.
int dataBytesOf(std::uint8_t status) {
    switch (status) {
    case kTimeCode:
    case kSongSelect:
        return 1;
    case kSongPosition:
        return 2;
    case kTuneRequest:
    case kTimingClock:
    case kStart:
    case kContinue:
    case kStop:
    case kActiveSensing:
        return 0;
    default:
        break;
    }
    if (status < kStatusBit || status >= kFirstSystemStatus) {
        return -1;
    }
    const int kind = status & kKindMask;
    return kind == kProgramChange || kind == kChannelPressure ? 1 : 2;
}

/// Reads within a track and remembers how that went.
class Cursor {
public:
    Cursor(const ByteView& bytes, std::size_t position, std::size_t end, Rigour rigour)
        : m_bytes(bytes), m_position(position), m_end(end), m_rigour(rigour) {}

    std::size_t position() const {
        return m_position;
    }
    bool atEnd() const {
        return m_position >= m_end;
    }
    std::uint8_t peek() const {
        return m_bytes[m_position];
    }
    void step() {
        ++m_position;
    }

    /// Numbers longer than they may be keep their low 32 bits, as in the engine.
    Reading number(std::uint32_t& value) {
        value = 0;
        for (std::size_t length = 1;; ++length) {
            if (atEnd()) {
                return Reading::CutOff;
            }
            const std::uint8_t byte = m_bytes[m_position++];
            value = value << 7 | (byte & kSevenBits);
            if (byte < kStatusBit) {
                return Reading::Event;
            }
            if (m_rigour == Rigour::Strict && length == kLongestNumber) {
                return Reading::Unreadable;
            }
        }
    }

    /// Data bytes of a channel or system message.
    Reading data(int count, RawEvent& event) {
        event.dataBegin = m_position;
        for (int i = 0; i < count; ++i, ++m_position) {
            if (atEnd()) {
                return Reading::CutOff;
            }
            if (m_rigour == Rigour::Strict && peek() >= kStatusBit) {
                return Reading::Unreadable;
            }
        }
        event.dataEnd = m_position;
        return Reading::Event;
    }

    /// A length field and as many bytes.
    Reading block(RawEvent& event) {
        std::uint32_t length = 0;
        const std::size_t start = m_position;
        if (const Reading reading = number(length); reading != Reading::Event) {
            return reading;
        }
        event.lengthBytes = m_position - start;
        event.dataBegin = m_position;
        if (length > m_end - m_position) {
            return Reading::CutOff;
        }
        m_position += length;
        event.dataEnd = m_position;
        return Reading::Event;
    }

private:
    const ByteView& m_bytes;
    std::size_t m_position;
    std::size_t m_end;
    Rigour m_rigour;
};

/// The closing F7 of a message, left out of its length by some writers, would else be read as the first
/// byte of a delay of at least 15,232 ticks.
void takeInClosingByte(const ByteView& bytes, std::size_t end, RawEvent& event) {
    if (event.dataEnd > event.dataBegin && bytes[event.dataEnd - 1] != kEndOfExclusive &&
        event.dataEnd < end && bytes[event.dataEnd] == kEndOfExclusive) {
        ++event.dataEnd;
        event.lengthMended = true;
    }
}

Reading readMeta(Cursor& cursor, Rigour rigour, RawEvent& event) {
    if (cursor.atEnd()) {
        return Reading::CutOff;
    }
    event.metaType = cursor.peek();
    cursor.step();
    if (rigour == Rigour::Strict && event.metaType >= kStatusBit) {
        return Reading::Unreadable;
    }
    return cursor.block(event);
}

Reading readBehindStatus(const ByteView& bytes, Cursor& cursor, std::size_t end, Rigour rigour,
                         RawEvent& event) {
    if (event.status == kMetaEvent) {
        return readMeta(cursor, rigour, event);
    }
    if (event.status == kSystemExclusive || event.status == kEndOfExclusive) {
        const Reading reading = cursor.block(event);
        if (reading == Reading::Event && event.status == kSystemExclusive) {
            takeInClosingByte(bytes, end, event);
        }
        return reading;
    }
    const int count = dataBytesOf(event.status);
    return count < 0 ? Reading::Unreadable : cursor.data(count, event);
}

/// Whether an event that was read could stand in a sound file.
bool isSound(const ByteView& bytes, const RawEvent& event) {
    if (event.isEndOfTrack()) {
        return event.dataBegin == event.dataEnd;
    }
    if (event.status == kSystemExclusive || event.status == kEndOfExclusive) {
        return event.dataEnd > event.dataBegin && bytes[event.dataEnd - 1] == kEndOfExclusive;
    }
    return true;
}

/// Whether a row of sound events begins at a position.
bool areEventsAt(const ByteView& bytes, std::size_t position, std::size_t end) {
    int running = kNoRunningStatus;
    for (int count = 0; count < kRow; ++count) {
        if (position >= end) {
            return count >= kRowAtEnd;
        }
        RawEvent event;
        if (readRawEvent(bytes, position, end, running, Rigour::Strict, event) != Reading::Event ||
            !isSound(bytes, event) || (count == 0 && event.delta > kLongestLikelyDelay)) {
            return false;
        }
        if (event.isEndOfTrack()) {
            return true;
        }
        running = runningAfter(event.status, running, Rigour::Strict);
        position = event.dataEnd;
    }
    return true;
}

} // namespace

Reading readRawEvent(const ByteView& bytes, std::size_t position, std::size_t end, int running,
                     Rigour rigour, RawEvent& event) {
    event = {};
    event.statusPosition = position;
    Cursor cursor(bytes, position, end, rigour);
    std::uint32_t delta = 0;
    if (const Reading reading = cursor.number(delta); reading != Reading::Event) {
        return reading;
    }
    event.delta = delta;
    event.statusPosition = cursor.position();
    if (cursor.atEnd()) {
        return Reading::CutOff;
    }
    const std::uint8_t first = cursor.peek();
    if (first >= kStatusBit) {
        event.status = first;
        cursor.step();
    } else if (running == kNoRunningStatus) {
        return Reading::Unreadable;
    } else {
        event.status = static_cast<std::uint8_t>(running);
    }
    const Reading reading = readBehindStatus(bytes, cursor, end, rigour, event);
    // A running status without data bytes would stand still for ever.
    const bool stands = reading == Reading::Event && event.dataEnd == event.statusPosition;
    return stands ? Reading::Unreadable : reading;
}

int runningAfter(std::uint8_t status, int running, Rigour rigour) {
    if (status < kFirstSystemStatus) {
        return status;
    }
    if (status == kSystemExclusive || status == kEndOfExclusive || status == kMetaEvent) {
        return running;
    }
    if (rigour == Rigour::AsPlayed) {
        return status;
    }
    return status >= kFirstRealTime ? running : kNoRunningStatus;
}

bool isUndefined(std::uint8_t status) {
    return status >= kFirstSystemStatus && status != kSystemExclusive &&
           status != kEndOfExclusive && status != kMetaEvent && dataBytesOf(status) < 0;
}

std::optional<std::size_t> findEvents(const ByteView& bytes, std::size_t from, std::size_t end) {
    for (std::size_t position = from; position < end; ++position) {
        if (areEventsAt(bytes, position, end)) {
            return position;
        }
    }
    return std::nullopt;
}

} // namespace host
