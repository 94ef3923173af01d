#include "base/current_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "base/strings.h"
#include "base/windows.h"
#include "tests/support/current_folder.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::CSystemFolderAsCurrent;

std::wstring Current() {
  std::array<wchar_t, 1024> path = {};
  ::GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data());
  return path.data();
}

class SystemFolderAsCurrentTest : public testing::Test {
 protected:
  ScratchFolder scratch_;
  CurrentFolder somewhere_{scratch_.Path()};
  std::wstring before_ = Current();
};

TEST_F(SystemFolderAsCurrentTest, LastsAsLongAsTheObject) {
  std::array<wchar_t, 1024> system = {};
  ::GetSystemDirectoryW(system.data(), static_cast<UINT>(system.size()));
  {
    const CSystemFolderAsCurrent folder;
    EXPECT_TRUE(nhupdate::EqualsIgnoringCase(Current(), system.data()));
  }

  EXPECT_EQ(Current(), before_);
}

TEST_F(SystemFolderAsCurrentTest, LeavesTheCurrentFolderAloneWhereItCannotBeHad) {
  INTERPOSER(SetCurrentDirectoryW) set([](const wchar_t*) -> BOOL {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  });
  { const CSystemFolderAsCurrent folder; }

  EXPECT_EQ(set.Calls(), 1);
}

TEST_F(SystemFolderAsCurrentTest, IsNotLeftForAFolderThatIsUnknown) {
  for (const DWORD more :
       {DWORD{0}, DWORD{10}}) {  // an error, and one that grows while it is asked
    INTERPOSER(GetCurrentDirectoryW) get(
        [&](DWORD units, wchar_t*) { return more == 0 ? 0 : units + more; });
    INTERPOSER(SetCurrentDirectoryW) set([](const wchar_t*) -> BOOL { return TRUE; });
    { const CSystemFolderAsCurrent folder; }

    EXPECT_EQ(set.Calls(), 1) << more;
  }
}

}  // namespace
}  // namespace nhupdate_test
