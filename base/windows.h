#pragma once

// The one door to <windows.h>, so that every file sees it with the same settings: wide functions
// only, no min and max macros, nothing but the core. Shell, COM and process headers are included
// after it by the few files that need them.

#if !defined(UNICODE) || !defined(NOMINMAX) || !defined(WIN32_LEAN_AND_MEAN)
#error "These are set for everything that is built (cmake/compile_options.cmake)."
#endif

#include <windows.h>
