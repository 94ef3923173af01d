#pragma once

// For the tests of the folder copy: a source that is there, a destination that isn't, and the
// records of a copy from one to the other.

#include <string>

#include "base/windows.h"
#include "install/folder_copy.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {

// Of what lies at that path below the source.
inline std::wstring FolderLine(const std::wstring& path = L"") {
  return L"2|Copy folder from {root}\\from" + path + L" to {root}\\to" + path;
}
inline std::wstring FileLine(const std::wstring& path) {
  return L"2|Copy file from {root}\\from" + path + L" to {root}\\to" + path;
}
inline std::wstring DeletionLine(const std::wstring& path) {
  return L"2|Delete Dir : {root}\\to" + path;
}
inline std::wstring FailureLine(DWORD error) {
  return L"4|Fail to copy file = " + std::to_wstring(error);
}

class FolderCopyTest : public InstallTest {
 protected:
  FolderCopyTest() { CreateFolders(source_); }

  bool Copy(const nhupdate::CopyOptions& options = {}) {
    return copy_.Copy(target_, source_, options);
  }

  // Of one copy, from source to destination, that fails.
  void ExpectFailure(const Lines& records, const nhupdate::CopyOptions& options = {}) {
    log_.ForgetRecords();

    EXPECT_FALSE(Copy(options));

    EXPECT_EQ(log_.Records(), records);
  }

  const std::wstring source_ = root_ + L"\\from";
  const std::wstring target_ = root_ + L"\\to";
  std::wstring failed_path_ = L"nothing yet";
  nhupdate::CFolderCopy copy_{folders_, log_.Log(), failed_path_};
};

inline constexpr nhupdate::CopyOptions kReplacing = {.delete_existing_sub_folders = true};

}  // namespace nhupdate_test
