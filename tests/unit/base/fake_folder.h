#pragma once

// A folder whose entries are made up, whatever the pattern it is listed with.

#include <gtest/gtest.h>

#include <cstddef>
#include <cwchar>
#include <utility>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

struct FakeEntry {
  const wchar_t* name;
  DWORD attributes = FILE_ATTRIBUTE_NORMAL;
  DWORD reparse_tag = 0;
};

class FakeFolder {
 public:
  // Listing ends with that error; without entries it can't even begin.
  explicit FakeFolder(std::vector<FakeEntry> entries, DWORD end_error = ERROR_NO_MORE_FILES)
      : entries_(std::move(entries)), end_error_(end_error) {}

  [[nodiscard]] int Steps() const { return next_.Calls(); }
  [[nodiscard]] int Closed() const { return close_.Calls(); }

 private:
  static inline const HANDLE kSearch = reinterpret_cast<HANDLE>(std::size_t{0x5EA4C4});

  BOOL Give(WIN32_FIND_DATAW* data) {
    if (position_ == entries_.size()) {
      ::SetLastError(end_error_);
      return FALSE;
    }
    const FakeEntry& entry = entries_[position_++];
    *data = {};
    data->dwFileAttributes = entry.attributes;
    data->dwReserved0 = entry.reparse_tag;
    std::wcscpy(data->cFileName, entry.name);
    return TRUE;
  }

  std::vector<FakeEntry> entries_;
  DWORD end_error_;
  std::size_t position_ = 0;
  INTERPOSER(FindFirstFileW) first_{[this](const wchar_t*, WIN32_FIND_DATAW* data) {
    return Give(data) ? kSearch : INVALID_HANDLE_VALUE;
  }};
  INTERPOSER(FindNextFileW) next_{[this](HANDLE search, WIN32_FIND_DATAW* data) -> BOOL {
    EXPECT_EQ(search, kSearch);
    return Give(data);
  }};
  INTERPOSER(FindClose) close_{[](HANDLE search) -> BOOL {
    EXPECT_EQ(search, kSearch);
    return TRUE;
  }};
};

}  // namespace nhupdate_test
