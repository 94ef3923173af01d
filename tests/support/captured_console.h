#pragma once

// Redirects this process's standard output stream, as Windows knows it, into a file for as long as
// the object lives. The C++ streams, and with them GoogleTest's own output, keep theirs.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

class CapturedConsole {
 public:
  CapturedConsole();
  ~CapturedConsole();
  CapturedConsole(const CapturedConsole&) = delete;
  CapturedConsole& operator=(const CapturedConsole&) = delete;

  // The bytes that were written so far.
  [[nodiscard]] std::string Bytes() const;

  // The same, read as UTF-8.
  [[nodiscard]] std::wstring Text() const;

 private:
  ScratchFolder scratch_;
  nhupdate::UniqueFile file_;
  HANDLE previous_;
};

}  // namespace nhupdate_test
