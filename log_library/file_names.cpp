#include "log_library/file_names.h"

#include <cstddef>

#include "base/windows.h"

namespace nhupdate {

namespace {

constexpr std::wstring_view kNameBegin = L"NHUpdateManager.";
constexpr std::wstring_view kNameEnd = L".log";
constexpr std::size_t kMaxDigits = 9;

}  // namespace

std::wstring RotatedName(std::uint32_t number) {
  return std::wstring(kNameBegin) + std::to_wstring(number) + std::wstring(kNameEnd);
}

std::uint32_t RotatedNumber(std::wstring_view name) {
  const std::size_t around = kNameBegin.size() + kNameEnd.size();
  if (name.size() <= around || name.size() > around + kMaxDigits ||
      !IsSameName(name.substr(0, kNameBegin.size()), kNameBegin) ||
      !IsSameName(name.substr(name.size() - kNameEnd.size()), kNameEnd)) {
    return 0;
  }
  std::uint32_t number = 0;
  for (const wchar_t unit : name.substr(kNameBegin.size(), name.size() - around)) {
    if (unit < L'0' || unit > L'9') {
      return 0;
    }
    number = number * 10 + static_cast<std::uint32_t>(unit - L'0');
  }
  return number;
}

bool IsSameName(std::wstring_view left, std::wstring_view right) {
  return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace nhupdate
