#pragma once

// The record with which every process begins.

#include <string>
#include <string_view>

namespace nhupdate {

// Who writes, with which versions, on what Windows, and in which time zone. The program's version
// is that of the running executable; the interface version is the one that the program was written
// for and passes to "Start".
[[nodiscard]] std::wstring HeaderText(std::string_view interface_version);

}  // namespace nhupdate
