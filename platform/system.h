// The one header through which the engine reaches the system: on Windows the system's own, elsewhere the
// platform layer's functions of the same names.
#pragma once

#ifdef _WIN32
#include <windows.h>

#include <float.h>
#include <mmsystem.h>
#else
#include "platform/linux/system_names.h"
#endif
