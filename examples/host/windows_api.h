#pragma once

// The one door to <windows.h>. Headers that need it first are included after this one.

#if !defined(UNICODE) || !defined(NOMINMAX) || !defined(WIN32_LEAN_AND_MEAN)
#error "These are set for everything that is built (CMakeLists.txt)."
#endif

#include <windows.h>
