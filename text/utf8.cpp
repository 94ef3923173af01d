#include "text/utf8.h"

#include <cstddef>

#include "base/windows.h"

namespace nhupdate {

std::wstring Utf8ToWide(const char* bytes, int byte_count) {
  // Windows would take -1 for "up to the terminator", which there may not be.
  if (byte_count <= 0) {
    return {};
  }
  const int units = ::MultiByteToWideChar(CP_UTF8, 0, bytes, byte_count, nullptr, 0);
  if (units <= 0) {
    return {};
  }
  std::wstring text(static_cast<std::size_t>(units), L'\0');
  const int converted = ::MultiByteToWideChar(CP_UTF8, 0, bytes, byte_count, text.data(), units);
  text.resize(converted > 0 ? static_cast<std::size_t>(converted) : 0);
  return text;
}

}  // namespace nhupdate
