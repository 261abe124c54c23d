// A sound file that is being written: 16 bits or Vorbis, two channels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "karaoke/render_options.h"

struct sf_private_tag;

namespace karaoke {

/// The same sound gives the same bytes.
class SoundFile {
public:
    /// @param descriptor  an empty file, open for reading and writing; stays open
    /// @param rate        frames a second
    /// @param title       UTF-8
    /// @throws host::HostError  when the library refuses
    SoundFile(int descriptor, SoundFormat format, int rate, const std::string& title);
    ~SoundFile();
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;

    /// @param stereo  left and right in turn; what lies beyond -1 and 1 is cut off
    /// @throws host::HostError  when the file takes no more
    void write(const float* stereo, std::size_t frames);
    /// Completes the file. Nothing can be written any more.
    /// @throws host::HostError  as above
    void close();

private:
    int m_descriptor;
    SoundFormat m_format;
    sf_private_tag* m_file;
};

} // namespace karaoke
