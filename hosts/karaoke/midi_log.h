// The MIDI log: every message that outputs receive, as lines of text.
#pragma once

#include <cstdio>
#include <mutex>
#include <string>

#include "corvmo32_linux.h"

namespace karaoke {

/// Records while it lives. Messages are gathered in memory on whatever thread sends, since a disk must not
/// hold up the music; write() puts them into the file.
class MidiLog {
public:
    /// Times count from this moment of the engine's clock, which must have been chosen before.
    /// @param withOutputs  the number of the output stands at the end of each line, as " ; 1"
    /// @throws host::HostError  when the file cannot be made
    MidiLog(const std::string& path, bool withOutputs);
    ~MidiLog();
    MidiLog(const MidiLog&) = delete;
    MidiLog& operator=(const MidiLog&) = delete;

    /// Writes what was gathered. Any thread.
    /// @throws host::HostError  when the file takes no more
    void write();
    /// The same for a way out on which nothing can be reported any more.
    void writeIfPossible() noexcept;

private:
    static void take(void* user, const corvmo_sent* message);
    void append(const corvmo_sent& message);

    std::string m_path;
    bool m_withOutputs;
    std::FILE* m_file;
    std::uint64_t m_start;
    std::mutex m_textMutex;
    std::mutex m_fileMutex;
    std::string m_text;
};

/// One line of the log, without its end: "12.000 90 3C 64": milliseconds, and the bytes in hexadecimal
std::string logLine(std::uint64_t microseconds, const corvmo_sent& message);

} // namespace karaoke
