// Keys from a terminal's bytes.
#pragma once

#include <string>

#include "karaoke/keys.h"

namespace karaoke {

/// Reads standard input, which must be a terminal that hands over every byte at once, without waiting.
class KeyInput {
public:
    /// The next key, kNoKey when there is none.
    Key next();

private:
    void fill();
    Key decode();

    std::string m_bytes; ///< read and not yet decoded
};

} // namespace karaoke
