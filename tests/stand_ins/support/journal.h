#pragma once

// Journals that several stand-ins write at the same time: files of tab-separated UTF-8 lines, one
// for each thing that happened. A line is in the file when Append returns, whatever becomes of the
// process, and anybody may read or delete the file meanwhile.

#include <cstddef>
#include <string>
#include <vector>

#include "base/unique_handle.h"

namespace nhupdate_stand_in {

// The most units that a path can have, and a variable of the environment.
inline constexpr std::size_t kLongestPath = 32767;

class Journal {
 public:
  // The file that the environment variable names; nothing is written when it names none. It is
  // opened for the first line and kept open, which costs less than to open it for each.
  explicit Journal(const wchar_t* path_variable);

  // Appends one line, the id of this process before the fields.
  // Line ends and tabs within a field become the pictures of them, U+240A, U+240D and U+2409.
  void Append(const std::vector<std::wstring>& fields);

 private:
  std::wstring path_;
  nhupdate::UniqueFile file_;
};

}  // namespace nhupdate_stand_in
