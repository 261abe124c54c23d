// The MIDI log.
#include "karaoke/midi_log.h"

#include <cerrno>
#include <cinttypes>
#include <cstring>

#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr std::uint64_t kMicrosecondsPerMillisecond = 1000;

std::string hexByte(std::uint8_t byte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    return {kDigits[byte >> 4], kDigits[byte & 0x0F]};
}

} // namespace

std::string logLine(std::uint64_t microseconds, const corvmo_sent& message) {
    char head[64];
    std::snprintf(head, sizeof head, "%" PRIu64 ".%03" PRIu64,
                  microseconds / kMicrosecondsPerMillisecond,
                  microseconds % kMicrosecondsPerMillisecond);
    std::string line = head;
    for (std::uint32_t i = 0; i < message.length; ++i) {
        line += ' ' + hexByte(message.data[i]);
    }
    return line;
}

MidiLog::MidiLog(const std::string& path, bool withOutputs)
    : m_path(path), m_withOutputs(withOutputs), m_file(std::fopen(path.c_str(), "we")),
      m_start(corvmo_GetClock()) {
    if (m_file == nullptr) {
        throw host::HostError("--midi-log: '" + path +
                              "' cannot be written: " + std::strerror(errno));
    }
    corvmo_RecordOutputs(&MidiLog::take, this);
}

MidiLog::~MidiLog() {
    corvmo_RecordOutputs(nullptr, nullptr);
    writeIfPossible();
    std::fclose(m_file);
}

void MidiLog::take(void* user, const corvmo_sent* message) {
    static_cast<MidiLog*>(user)->append(*message);
}

void MidiLog::append(const corvmo_sent& message) {
    std::string line = logLine(message.time - m_start, message);
    if (m_withOutputs) {
        line += " ; " + std::to_string(message.output);
    }
    const std::lock_guard guard(m_textMutex);
    m_text += line;
    m_text += '\n';
}

void MidiLog::write() {
    const std::lock_guard fileGuard(m_fileMutex);
    std::string text;
    {
        const std::lock_guard textGuard(m_textMutex);
        text.swap(m_text);
    }
    const bool whole = std::fwrite(text.data(), 1, text.size(), m_file) == text.size();
    if (!whole || std::fflush(m_file) != 0) {
        throw host::HostError("--midi-log: '" + m_path +
                              "' cannot be written: " + std::strerror(errno));
    }
}

void MidiLog::writeIfPossible() noexcept {
    try {
        write();
    } catch (const std::exception&) {
        // A failure that matters was reported by an earlier write.
    }
}

} // namespace karaoke
