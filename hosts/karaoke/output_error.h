// Standard output that takes no more.
#pragma once

#include <cerrno>
#include <cstring>

#include "shared/error_texts.h"

namespace karaoke {

/// Writing to standard output has just failed.
class OutputError : public host::HostError {
public:
    OutputError()
        : HostError(std::string("standard output cannot be written: ") + std::strerror(errno)),
          m_readerGone(errno == EPIPE) {}

    /// The reader of the pipe has seen enough, which needs no message.
    bool readerGone() const {
        return m_readerGone;
    }

private:
    bool m_readerGone;
};

} // namespace karaoke
