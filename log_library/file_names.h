#pragma once

// The names of the log files: NHUpdateManager.log for the current one, NHUpdateManager.<number>.log
// for a rotated one.

#include <cstdint>
#include <string>
#include <string_view>

namespace nhupdate {

inline constexpr wchar_t kCurrentName[] = L"NHUpdateManager.log";

// Finds all rotated files, and some others.
inline constexpr wchar_t kRotatedNamePattern[] = L"NHUpdateManager.*.log";

// Numbers have at most nine digits.
inline constexpr std::uint32_t kHighestRotatedNumber = 999'999'999;

[[nodiscard]] std::wstring RotatedName(std::uint32_t number);

// The number in the name of a rotated file, in whatever letters; 0 for every other name.
[[nodiscard]] std::uint32_t RotatedNumber(std::wstring_view name);

// Compares names or paths as the file system does: one in other letters is the same.
[[nodiscard]] bool IsSameName(std::wstring_view left, std::wstring_view right);

}  // namespace nhupdate
