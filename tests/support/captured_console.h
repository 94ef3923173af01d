#pragma once

// Redirects this process's standard output stream, as Windows knows it, into a file for as long as
// the object lives. The C++ streams, and with them GoogleTest's own output, keep theirs.

#include "tests/support/utf8_text.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class CapturedConsole {
 public:
  CapturedConsole() { ::SetStdHandle(STD_OUTPUT_HANDLE, file_.Get()); }
  ~CapturedConsole() { ::SetStdHandle(STD_OUTPUT_HANDLE, previous_); }

  // The bytes that were written so far.
  [[nodiscard]] std::string Bytes() const { return ReadFileBytes(path_); }

  // The same, read as UTF-8.
  [[nodiscard]] std::wstring Text() const { return ToWide(Bytes()); }

 private:
  const ScratchFolder scratch_;
  const std::wstring path_ = scratch_.Path() + L"\\console.txt";
  const HANDLE previous_ = ::GetStdHandle(STD_OUTPUT_HANDLE);
  const nhupdate::UniqueFile file_{::CreateFileW(
      path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)};
};

}  // namespace nhupdate_test
