#include "base/console.h"

#include <algorithm>
#include <cstddef>

#include "base/windows.h"

namespace nhupdate {

namespace {

// Older consoles refuse a write that doesn't fit into their 64 KiB exchange buffer.
constexpr std::size_t kConsoleWriteUnits = 8192;

bool IsLeadSurrogate(wchar_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

void WriteToConsole(HANDLE console, const std::wstring& text) {
  std::size_t position = 0;
  while (position < text.size()) {
    std::size_t units = std::min(text.size() - position, kConsoleWriteUnits);
    if (units > 1 && IsLeadSurrogate(text[position + units - 1])) {
      --units;
    }
    DWORD written = 0;
    if (!::WriteConsoleW(console, text.data() + position, static_cast<DWORD>(units), &written,
                         nullptr) ||
        written == 0) {
      return;
    }
    position += written;
  }
}

std::string ToUtf8(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  const int size =
      ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  if (size <= 0) {
    return {};
  }
  std::string bytes(static_cast<std::size_t>(size), '\0');
  const int converted =
      ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, bytes.data(), size, nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(std::max(converted, 0)));
  return bytes;
}

void WriteToStream(HANDLE stream, const std::string& bytes) {
  std::size_t position = 0;
  while (position < bytes.size()) {
    DWORD written = 0;
    if (!::WriteFile(stream, bytes.data() + position, static_cast<DWORD>(bytes.size() - position),
                     &written, nullptr) ||
        written == 0) {
      return;
    }
    position += written;
  }
}

}  // namespace

void WriteConsoleText(const std::wstring& text) {
  const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
  if (output == nullptr || output == INVALID_HANDLE_VALUE) {
    return;
  }
  DWORD mode = 0;
  if (::GetConsoleMode(output, &mode)) {
    WriteToConsole(output, text);
  } else {
    WriteToStream(output, ToUtf8(text));
  }
}

}  // namespace nhupdate
