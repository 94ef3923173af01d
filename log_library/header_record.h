#pragma once

// The record with which every process begins.

#include <string>
#include <string_view>

namespace nhupdate {

// Who writes, with which versions, on what Windows, and in which time zone.
[[nodiscard]] std::wstring HeaderText(std::string_view program_version);

}  // namespace nhupdate
