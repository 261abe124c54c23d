// A file that appears under its name only when it is finished.
#include "karaoke/finished_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "shared/error_texts.h"

namespace karaoke {

namespace {

constexpr mode_t kReadableByAll = 0666;

/// Temporary files are private at first; a finished one is as any other program makes it.
mode_t usualMode() {
    const mode_t masked = ::umask(0);
    ::umask(masked);
    return kReadableByAll & ~masked;
}

/// Devices and pipes cannot be replaced by a file.
void refuseOtherThanFiles(const std::string& path) {
    std::error_code none;
    const auto status = std::filesystem::status(path, none);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw host::HostError("'" + path + "' is not a regular file");
    }
}

/// Where a link leads, so that the link itself stays.
std::string targetOf(const std::string& path) {
    std::error_code none;
    const auto target = std::filesystem::canonical(path, none);
    return target.empty() ? path : target.string();
}

} // namespace

FinishedFile::FinishedFile(const std::string& path)
    : m_path(targetOf(path)), m_temporary(m_path + ".XXXXXX"), m_descriptor(-1) {
    refuseOtherThanFiles(path);
    m_descriptor = ::mkostemp(m_temporary.data(), O_CLOEXEC);
    if (m_descriptor < 0) {
        fail();
    }
}

FinishedFile::~FinishedFile() {
    ::close(m_descriptor);
    if (!m_finished) {
        ::unlink(m_temporary.c_str());
    }
}

void FinishedFile::write(const std::string& text) const {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t taken = ::write(m_descriptor, text.data() + done, text.size() - done);
        if (taken < 0 && errno != EINTR) {
            fail();
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(taken, 0));
    }
}

void FinishedFile::finish() {
    if (::fchmod(m_descriptor, usualMode()) != 0 || ::fsync(m_descriptor) != 0 ||
        ::rename(m_temporary.c_str(), m_path.c_str()) != 0) {
        fail();
    }
    m_finished = true;
}

void FinishedFile::abandon() const noexcept {
    ::unlink(m_temporary.c_str());
}

void FinishedFile::fail() const {
    throw host::HostError("'" + m_path + "' cannot be written: " + std::strerror(errno));
}

} // namespace karaoke
