#include "tests/end_to_end/support/copied_files.h"

#include <gtest/gtest.h>

#include "base/paths.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

void CopyOver(const std::wstring& source, const std::wstring& target) {
  CreateFolders(nhupdate::ParentFolder(target));
  EXPECT_TRUE(::CopyFileW(source.c_str(), target.c_str(), FALSE))
      << ToUtf8(source) << " => " << ToUtf8(target) << ": " << ::GetLastError();
}

void CopyTree(const std::wstring& source, const std::wstring& target) {
  CreateFolders(target);
  for (const std::wstring& entry : ListTree(source)) {
    if (entry.back() == L'\\') {
      CreateFolders(target + L"\\" + entry.substr(0, entry.size() - 1));
    } else {
      CopyOver(source + L"\\" + entry, target + L"\\" + entry);
    }
  }
}

}  // namespace nhupdate_test
