// The machine of the fuzz targets.
#include "fuzz/machine.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <cstdlib>

#include "shared/sounding.h"

/// The records are packed, so that the addresses in them are not aligned.
extern "C" const char* __lsan_default_options() {
    return "use_unaligned=1";
}

namespace fuzz {

namespace {

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kSystemExclusive = 0xF0;
constexpr std::uint8_t kEndOfExclusive = 0xF7;

host::Sounding sounds;
std::bitset<256> allowedBytes;
bool rawAllowed = false;

void judgeShort(const corvmo_sent& message) {
    require(message.data[0] >= kStatusBit && message.data[0] < kSystemExclusive,
            "a short message is a channel message");
    for (std::uint32_t i = 1; i < message.length; ++i) {
        const std::uint8_t byte = message.data[i];
        require(byte < kStatusBit || allowedBytes[byte], "data bytes above 127 are the song's own");
    }
}

void judge(void* /*user*/, const corvmo_sent* message) {
    require(message->length > 0, "a message has bytes");
    if (!rawAllowed && message->data[0] == kSystemExclusive) {
        require(message->length >= 2 && message->data[message->length - 1] == kEndOfExclusive,
                "a system-exclusive message ends with F7");
    } else if (!rawAllowed) {
        judgeShort(*message);
    }
    sounds.take(static_cast<int>(message->output), {message->data, message->length});
}

} // namespace

void require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}

MemoryFile::MemoryFile(std::span<const std::uint8_t> bytes)
    : m_descriptor(::memfd_create("song", MFD_CLOEXEC)),
      m_path("/proc/self/fd/" + std::to_string(m_descriptor)) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(m_descriptor, bytes.data() + written, bytes.size() - written);
        require(count > 0, "the song can be written to memory");
        written += static_cast<std::size_t>(count);
    }
}

MemoryFile::~MemoryFile() {
    ::close(m_descriptor);
}

Machine::Machine() {
    corvmo_UseManualClock(0);
    const corvmo_output output{"judge", nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr};
    const corvmo_output outputs[kOutputs] = {output, output};
    corvmo_SetOutputs(outputs, kOutputs);
    corvmo_RecordOutputs(judge, nullptr);
    InitializeCriticalSection(&m_lock);
    m_window = corvmo_CreateWindow();
}

void Machine::pass(std::uint32_t milliseconds) {
    corvmo_AdvanceClock(milliseconds);
    for (corvmo_message message{}; corvmo_WaitMessage(m_window, &message, 0) != 0;) {
    }
}

void Machine::forget() {
    sounds = {};
    allowedBytes.reset();
    rawAllowed = false;
}

void Machine::allowBytesOf(HMIDIOUT player) {
    const MMEVENT* const events = mm_GetPointerEvents(player, 0);
    for (std::int32_t i = 0; i < mm_GetNumEvents(player); ++i) {
        allowedBytes.set(events[i].byte1);
        allowedBytes.set(events[i].byte2);
    }
}

void Machine::allowRawMessages() {
    rawAllowed = true;
}

std::vector<std::string> Machine::sounding() {
    return sounds.list();
}

bool Machine::soundsNotes() {
    const std::vector<std::string> list = sounds.list();
    return std::any_of(list.begin(), list.end(), [](const std::string& line) {
        return line.find("note") != std::string::npos;
    });
}

Machine& machine() {
    static auto& instance = *new Machine;
    return instance;
}

Players startEngine() {
    MMINIT settings{};
    settings.hwnd = machine().window();
    settings.timerPeriod = 5;
    settings.deviceIndex2 = 1;
    settings.mode1 = MMMODE_GS;
    settings.mode2 = MMMODE_XG;
    settings.flags = MMINIT_SECONDPLAYER | MMINIT_SYSEXSTORE | MMINIT_RESETONOPEN;
    settings.lock = machine().lock();
    Players players;
    require(mm_InitEngine(&settings, &players.first, &players.second) == 1, "the engine starts");
    return players;
}

} // namespace fuzz
