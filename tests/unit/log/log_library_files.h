#pragma once

// The variants of the recording log library as files in a scratch folder, and what they were
// called with.

#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

class LogLibraryFiles {
 public:
  LogLibraryFiles();
  ~LogLibraryFiles();
  LogLibraryFiles(const LogLibraryFiles&) = delete;
  LogLibraryFiles& operator=(const LogLibraryFiles&) = delete;

  [[nodiscard]] const std::wstring& Folder() const { return scratch_.Path(); }

  // Puts a copy of the variant (a file name without extension) into the folder; returns its path.
  [[nodiscard]] std::wstring Add(const std::wstring& variant) const;

  // All calls into the libraries so far, each as L"Entry|argument|argument".
  [[nodiscard]] std::vector<std::wstring> Calls() const;

 private:
  ScratchFolder scratch_;
};

// True when the library is in this process.
[[nodiscard]] bool IsLoaded(const std::wstring& library_path);

}  // namespace nhupdate_test
