#include "base/existence.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ExistsTest, FindsFilesAndFoldersHiddenReadOnlyOrHeld) {
  const ScratchFolder scratch;
  const std::wstring plain = scratch.Path() + L"\\empty.txt";
  const std::wstring special = scratch.Path() + L"\\file.txt";
  WriteFileBytes(plain, "");
  WriteFileBytes(special, "x");
  ::SetFileAttributesW(special.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  const HeldFile held(special);

  EXPECT_TRUE(Exists(scratch.Path()));
  EXPECT_TRUE(Exists(plain));
  EXPECT_TRUE(Exists(special));
}

TEST(ExistsTest, FindsNothingUnderAnyOtherName) {
  const ScratchFolder scratch;
  const std::wstring deleted = scratch.Path() + L"\\deleted";
  WriteFileBytes(scratch.Path() + L"\\file.txt", "x");
  WriteFileBytes(deleted, "x");
  EXPECT_TRUE(::DeleteFileW(deleted.c_str()));

  for (const wchar_t* name : {L"\\deleted", L"\\missing\\file.txt", L"\\file.tx",
                              L"\\file.txt\\below", L"\\*.txt", L"\\file.tx?"}) {
    EXPECT_FALSE(Exists(scratch.Path() + name)) << PrintToString(name);
  }
  EXPECT_FALSE(Exists(L""));
}

// A full stop at the end of a name is only found by way of the extended-length form, which long
// paths get.
TEST(ExistsTest, FindsALongPath) {
  const ScratchFolder scratch;
  const std::wstring folder = LongPathBelow(scratch.Path());
  CreateFolders(folder);
  const std::wstring file = folder + L"\\ends with.";
  WriteFileBytes(L"\\\\?\\" + file, "x");

  EXPECT_TRUE(Exists(file));
  EXPECT_FALSE(Exists(folder + L"\\missing"));
  ::DeleteFileW((L"\\\\?\\" + file).c_str());
}

}  // namespace
}  // namespace nhupdate_test
