#pragma once

// The main function of each stand-in. Its arguments are those of the C runtime: to have Windows
// split the command line takes a library that costs as much as all the rest of the start.
extern "C" int wmain(int count, wchar_t** arguments);
