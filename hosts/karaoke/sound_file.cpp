// A sound file that is being written.
#include "karaoke/sound_file.h"

#include <sndfile.h>

#include <cerrno>
#include <cstring>

#include "karaoke/ogg_serial.h"
#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr int kChannels = 2;
constexpr double kVorbisQuality = 0.6; ///< of 1: no difference is heard

int libraryFormat(SoundFormat format) {
    switch (format) {
    case SoundFormat::Flac:
        return SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    case SoundFormat::Ogg:
        return SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    case SoundFormat::Wav:
        break;
    }
    return SF_FORMAT_WAV | SF_FORMAT_PCM_16;
}

/// The system tells more than the library, if it is what failed.
[[noreturn]] void fail(const char* libraryError) {
    const char* const reason = errno != 0 ? std::strerror(errno) : libraryError;
    throw host::HostError(std::string("the sound file cannot be written: ") + reason);
}

} // namespace

SoundFile::SoundFile(int descriptor, SoundFormat format, int rate, const std::string& title)
    : m_descriptor(descriptor), m_format(format), m_file(nullptr) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = kChannels;
    info.format = libraryFormat(format);
    errno = 0;
    m_file = sf_open_fd(descriptor, SFM_WRITE, &info, SF_FALSE);
    if (m_file == nullptr) {
        fail(sf_strerror(nullptr));
    }
    sf_command(m_file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    double quality = kVorbisQuality;
    if (format == SoundFormat::Ogg) {
        sf_command(m_file, SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    }
    sf_set_string(m_file, SF_STR_TITLE, title.c_str());
}

SoundFile::~SoundFile() {
    if (m_file != nullptr) {
        sf_close(m_file);
    }
}

void SoundFile::write(const float* stereo, std::size_t frames) {
    const auto count = static_cast<sf_count_t>(frames);
    errno = 0;
    if (sf_writef_float(m_file, stereo, count) != count) {
        fail(sf_strerror(m_file));
    }
}

void SoundFile::close() {
    SNDFILE* const file = m_file;
    m_file = nullptr;
    errno = 0;
    if (const int error = sf_close(file); error != 0) {
        fail(sf_error_number(error));
    }
    if (m_format == SoundFormat::Ogg) {
        setOggSerial(m_descriptor);
    }
}

} // namespace karaoke
