#include "log_library/settings.h"

#include <array>
#include <cstddef>

#include "base/windows.h"
#include "log_library/record_level.h"

namespace nhupdate {

namespace {

struct Range {
  std::uint32_t lowest;
  std::uint32_t highest;
};

constexpr Range kLevels = {kDebugLevel, kErrorLevel};
constexpr Range kFileSizesKb = {16, 1024 * 1024};  // up to 1 GiB
constexpr Range kFileCounts = {1, 1000};
constexpr Range kAgesDays = {1, 3650};  // up to ten years

// Room for any number of any range. What fills it may have been cut off and is no number.
constexpr std::size_t kValueUnits = 16;

std::uint32_t ReadNumber(const wchar_t* path, const wchar_t* key, Range range,
                         std::uint32_t default_value) {
  std::array<wchar_t, kValueUnits> text = {};
  const DWORD units = ::GetPrivateProfileStringW(L"Log", key, L"", text.data(),
                                                 static_cast<DWORD>(text.size()), path);
  if (units >= text.size() - 1) {
    return default_value;
  }
  std::uint64_t number = 0;
  for (DWORD index = 0; index < units; ++index) {
    const wchar_t unit = text[index];
    if (unit < L'0' || unit > L'9') {
      return default_value;
    }
    number = number * 10 + static_cast<std::uint64_t>(unit - L'0');
  }
  // Without a single digit the number is 0, which lies outside every range.
  const bool is_usable = number >= range.lowest && number <= range.highest;
  return is_usable ? static_cast<std::uint32_t>(number) : default_value;
}

}  // namespace

LogSettings ReadLogSettings(const wchar_t* path) {
  LogSettings settings;
  if (path == nullptr || *path == L'\0') {
    // Windows would look into its own settings instead.
    return settings;
  }
  const auto default_level = static_cast<std::uint32_t>(settings.level);
  settings.level = static_cast<int>(ReadNumber(path, L"Level", kLevels, default_level));
  settings.max_file_kb = ReadNumber(path, L"MaxFileSizeKB", kFileSizesKb, settings.max_file_kb);
  settings.max_files = ReadNumber(path, L"MaxFiles", kFileCounts, settings.max_files);
  settings.max_age_days = ReadNumber(path, L"MaxAgeDays", kAgesDays, settings.max_age_days);
  return settings;
}

}  // namespace nhupdate
