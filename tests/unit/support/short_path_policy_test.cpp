#include "tests/support/short_path_policy.h"

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

TEST(ShortPathPolicyTest, RefusesPathsFrom260UnitsOnUnlessTheyHaveThePrefix) {
  const ScratchFolder scratch;
  std::wstring folder = scratch.Path() + L"\\" + std::wstring(120, L'a');
  folder += L"\\" + std::wstring(257 - folder.size(), L'b');
  CreateFolders(folder);
  WriteFileBytes(folder + L"\\x", "x");
  WriteFileBytes(folder + L"x", "x");
  struct Case {
    std::wstring path;
    bool is_refused;
  };
  const Case cases[] = {{folder + L"x", false},   // of 259 units
                        {folder + L"\\x", true},  // of 260
                        {L"\\\\?\\" + folder + L"\\x", false}};

  const ShortPathPolicy policy;
  for (const Case& c : cases) {
    WIN32_FIND_DATAW entry = {};
    const nhupdate::UniqueFile file(::CreateFileW(c.path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(!file.IsValid(), c.is_refused) << c.path.size();
    const nhupdate::UniqueFindHandle search(::FindFirstFileW(c.path.c_str(), &entry));
    EXPECT_EQ(!search.IsValid(), c.is_refused) << c.path.size();
    EXPECT_EQ(::GetFileAttributesW(c.path.c_str()) == INVALID_FILE_ATTRIBUTES, c.is_refused);
    EXPECT_TRUE(!c.is_refused || ::GetLastError() == ERROR_PATH_NOT_FOUND);
  }
}

}  // namespace
}  // namespace nhupdate_test
