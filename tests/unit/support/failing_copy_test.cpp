#include "tests/support/failing_copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class FailingCopyTest : public testing::Test {
 protected:
  FailingCopyTest() { WriteFileBytes(scratch_.Path() + L"\\source", "x"); }

  BOOL CopyTo(const std::wstring& name) {
    return ::CopyFileW((scratch_.Path() + L"\\source").c_str(),
                       (scratch_.Path() + L"\\" + name).c_str(), FALSE);
  }

  ScratchFolder scratch_;
};

TEST_F(FailingCopyTest, FailsEveryCopyWithTheError) {
  const FailingCopy copy(ERROR_DISK_FULL);

  EXPECT_FALSE(CopyTo(L"target"));
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
  EXPECT_EQ(copy.Calls(), 1);

  EXPECT_THAT(ListTree(scratch_.Path()), ElementsAre(L"source"));
}

TEST_F(FailingCopyTest, LeavesWhatIsNotChosenAlone) {
  const FailingCopy copy(ERROR_DISK_FULL,
                         [](const std::wstring& target) { return target.ends_with(L"bad"); });

  EXPECT_FALSE(CopyTo(L"bad"));
  EXPECT_TRUE(CopyTo(L"good"));

  EXPECT_THAT(ListTree(scratch_.Path()), ElementsAre(L"good", L"source"));
}

TEST_F(FailingCopyTest, CanFailTheFirstCopiesOnly) {
  const FailingCopy copy(ERROR_DISK_FULL, [&](const std::wstring&) { return copy.Calls() <= 2; });

  EXPECT_FALSE(CopyTo(L"target"));
  EXPECT_FALSE(CopyTo(L"target"));
  EXPECT_TRUE(CopyTo(L"target"));
}

}  // namespace
}  // namespace nhupdate_test
