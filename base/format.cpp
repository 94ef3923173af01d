#include "base/format.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <tuple>

namespace nhupdate::format_detail {

// These two functions, unlike the standard wide printf family, read %s as wide text under every
// compiler and runtime that the program is built with.
std::wstring FormatUnchecked(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list arguments_again;
  va_copy(arguments_again, arguments);

  std::wstring text;
  const int length = _vscwprintf(format, arguments);
  if (length > 0) {
    const auto units = static_cast<std::size_t>(length);
    text.resize(units);
    // The string's own terminator is the one unit that is written behind its length.
    std::ignore = _vsnwprintf(text.data(), units + 1, format, arguments_again);
  }

  va_end(arguments_again);
  va_end(arguments);
  return text;
}

}  // namespace nhupdate::format_detail
