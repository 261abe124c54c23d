// The precision control of the old x86 floating-point unit.
#include "platform/linux/system_names.h"

#ifdef __i386__

#include <fpu_control.h>

namespace {

unsigned toSystem(fpu_control_t control) {
    switch (control & _FPU_EXTENDED) {
    case _FPU_SINGLE:
        return _PC_24;
    case _FPU_DOUBLE:
        return _PC_53;
    default:
        return _PC_64;
    }
}

unsigned toUnit(unsigned value) {
    switch (value & _MCW_PC) {
    case _PC_24:
        return _FPU_SINGLE;
    case _PC_53:
        return _FPU_DOUBLE;
    default:
        return _FPU_EXTENDED;
    }
}

} // namespace

unsigned _controlfp(unsigned value, unsigned mask) {
    fpu_control_t control = 0;
    _FPU_GETCW(control);
    if ((mask & _MCW_PC) != 0) {
        control = static_cast<fpu_control_t>((control & ~unsigned{_FPU_EXTENDED}) | toUnit(value));
        _FPU_SETCW(control);
    }
    return toSystem(control);
}

#else

unsigned _controlfp(unsigned, unsigned) {
    return _PC_53;
}

#endif
