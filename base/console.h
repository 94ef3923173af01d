#pragma once

// Messages for the time when there is no log: they go to the standard output stream.

#include <string>

#include "base/format.h"

namespace nhupdate {

// Writes the text whole, whatever its characters: as wide text to a console, as UTF-8 to a file or
// a pipe. Without a standard output stream, or when it is closed, nothing is written; that is no
// failure, since a program that was started in the background has nobody to read it.
void WriteConsoleText(const std::wstring& text);

// Formats and writes a message. No line end is added.
template <typename... Arguments>
void PrintConsoleError(FormatString<Arguments...> format, const Arguments&... arguments) {
  WriteConsoleText(Format(format, arguments...));
}

}  // namespace nhupdate
