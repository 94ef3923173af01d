#pragma once

// The one door to <windows.h>, so that every file sees it with the same settings: wide functions
// only, no min and max macros, nothing but the core. Shell, COM and process headers are included
// after it by the few files that need them.

#ifndef UNICODE
#error "The program is built for wide characters only."
#endif

#include <windows.h>
