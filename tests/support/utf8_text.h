#pragma once

// Turns wide texts into UTF-8, which GoogleTest can show as it is, and back.

#include <cstddef>
#include <string>

#include "base/windows.h"
#include "text/utf8.h"

namespace nhupdate_test {

[[nodiscard]] inline std::string ToUtf8(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

[[nodiscard]] inline std::wstring ToWide(const std::string& text) {
  return nhupdate::Utf8ToWide(text.data(), static_cast<int>(text.size()));
}

}  // namespace nhupdate_test
