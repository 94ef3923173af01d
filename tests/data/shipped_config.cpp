#include "tests/data/shipped_config.h"

#include <gtest/gtest.h>

#include "base/folder_listing.h"
#include "base/windows.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

std::vector<std::wstring> FilesMatching(const std::wstring& pattern) {
  std::vector<std::wstring> names;
  nhupdate::CFolderListing listing(ShippedConfigFolder(), (L"\\" + pattern).c_str());
  while (listing.Next()) {
    names.push_back(listing.Name());
  }
  EXPECT_FALSE(names.empty()) << "Nothing beside the tests matches "
                              << testing::PrintToString(pattern);
  return names;
}

}  // namespace

std::wstring ShippedConfigFolder() {
  return TestProgramFolder() + L"\\data\\Config";
}

std::vector<std::wstring> ShippedStringFiles() {
  return FilesMatching(L"NHUpdateManager.*.json");
}

void CopyShippedConfigTo(const std::wstring& folder) {
  CreateFolders(folder);
  for (const std::wstring& name : FilesMatching(L"*")) {
    EXPECT_TRUE(::CopyFileW((ShippedConfigFolder() + L"\\" + name).c_str(),
                            (folder + L"\\" + name).c_str(), FALSE))
        << testing::PrintToString(name);
  }
}

}  // namespace nhupdate_test
