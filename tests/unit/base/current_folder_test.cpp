#include "base/current_folder.h"

#include "base/strings.h"
#include "tests/support/current_folder.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class SystemFolderAsCurrentTest : public testing::Test {
 protected:
  ScratchFolder scratch_;
  CurrentFolder somewhere_{scratch_.Path()};
  std::wstring before_ = PathOfCurrentFolder();
};

TEST_F(SystemFolderAsCurrentTest, LastsAsLongAsTheObject) {
  {
    const CSystemFolderAsCurrent folder;
    EXPECT_TRUE(folder.IsCurrent());
    EXPECT_TRUE(EqualsIgnoringCase(PathOfCurrentFolder(), PathOfSystemFolder()));
  }

  EXPECT_EQ(PathOfCurrentFolder(), before_);
}

TEST_F(SystemFolderAsCurrentTest, LeavesTheCurrentFolderAloneWhereItCannotBeHad) {
  INTERPOSER(SetCurrentDirectoryW) set(Answers(FALSE, ERROR_ACCESS_DENIED));
  {
    const CSystemFolderAsCurrent folder;
    EXPECT_FALSE(folder.IsCurrent());
  }

  EXPECT_EQ(set.Calls(), 1);
}

TEST_F(SystemFolderAsCurrentTest, LeavesTheCurrentFolderAloneWhereThePathIsTooLong) {
  INTERPOSER(GetSystemDirectoryW) get([&](auto... arguments) {
    get.Original()(arguments...);
    return UINT{MAX_PATH};
  });
  const CSystemFolderAsCurrent folder;

  EXPECT_FALSE(folder.IsCurrent());
  EXPECT_EQ(PathOfCurrentFolder(), before_);
}

// Windows doesn't tell the former folder, or its path gets longer while it is asked for.
TEST_F(SystemFolderAsCurrentTest, IsNotLeftForAFolderThatIsUnknown) {
  for (const bool gets_longer : {false, true}) {
    INTERPOSER(GetCurrentDirectoryW) get(
        [&](DWORD units, wchar_t*) { return gets_longer ? units + 10 : 0; });
    INTERPOSER(SetCurrentDirectoryW) set(Answers(TRUE));
    { const CSystemFolderAsCurrent folder; }

    EXPECT_EQ(set.Calls(), 1) << gets_longer;
  }
}

}  // namespace
}  // namespace nhupdate_test
