// The engine's error codes in words, and the exception that carries a message to the user.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace host {

/// Something that the user has to be told; what() is one line.
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One song cannot be played; others may. The message names its file.
class SongError : public HostError {
public:
    SongError(const std::string& path, const std::string& reason)
        : HostError(path + ": " + reason) {}
};

/// @param code  what mm_GetLastError answers
/// @return what has happened, in one line
std::string errorText(std::uint32_t code);

} // namespace host
