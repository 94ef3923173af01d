#include "base/existence.h"

#include <gtest/gtest.h>

#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;

TEST(ExistsTest, FindsFilesAndFoldersAlike) {
  const ScratchFolder scratch;
  const std::wstring file = scratch.Path() + L"\\file.txt";
  WriteFileBytes(file, "");

  EXPECT_TRUE(Exists(scratch.Path()));
  EXPECT_TRUE(Exists(file));
}

TEST(ExistsTest, FindsWhatIsReadOnlyHiddenOrHeld) {
  const ScratchFolder scratch;
  const std::wstring file = scratch.Path() + L"\\file.txt";
  WriteFileBytes(file, "x");
  ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  const HeldFile held(file);

  EXPECT_TRUE(Exists(file));
}

TEST(ExistsTest, FindsNothingUnderAnyOtherName) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\file.txt", "x");

  for (const wchar_t* name : {L"\\missing", L"\\missing\\file.txt", L"\\file.tx",
                              L"\\file.txt\\below", L"\\*.txt", L"\\file.tx?"}) {
    EXPECT_FALSE(Exists(scratch.Path() + name)) << testing::PrintToString(name);
  }
  EXPECT_FALSE(Exists(L""));
}

TEST(ExistsTest, NoLongerFindsWhatWasDeleted) {
  const ScratchFolder scratch;
  const std::wstring file = scratch.Path() + L"\\file.txt";
  WriteFileBytes(file, "x");
  ASSERT_TRUE(Exists(file));

  ::DeleteFileW(file.c_str());

  EXPECT_FALSE(Exists(file));
}

}  // namespace
}  // namespace nhupdate_test
