#pragma once

// Where the running executable lies.

#include <string>

namespace nhupdate {

struct ExecutablePath {
  // At most 259 characters; empty when Windows doesn't tell. Windows gives the path as the program
  // was started by it; here it has the names that are on the disk, no short ones and none in
  // another letter case, and no prefix of the extended-length form: what it is compared with comes
  // from listings.
  std::wstring path;
  // True when the whole path is longer, so that its last folders aren't known.
  bool is_cut_off = false;
};

[[nodiscard]] ExecutablePath FindExecutable();

}  // namespace nhupdate
