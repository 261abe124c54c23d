// Keeps ALSA from printing to the standard error stream what it does not find.
#pragma once

#include <cstdarg>

// In some releases this header leaves one function outside its own extern "C".
extern "C" {
#include <alsa/error.h>
}
#include <alsa/asoundlib.h>

/// For the calling thread, while it lives.
class QuietAlsa {
public:
    QuietAlsa() : m_previous(snd_lib_error_set_local(ignore)) {}
    ~QuietAlsa() {
        snd_lib_error_set_local(m_previous);
    }
    QuietAlsa(const QuietAlsa&) = delete;
    QuietAlsa& operator=(const QuietAlsa&) = delete;

private:
    static void ignore(const char*, int, const char*, int, const char*, va_list) {}

    snd_local_error_handler_t m_previous;
};
