// The folder copy of an installation is tried ten times, three seconds apart.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/quiet_desktop.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class RetriedInstallCopyTest : public testing::Test {
 protected:
  RetriedInstallCopyTest() {
    product_.Start();
    product_.ForgetRecords();
    WriteFileBytes(staged_, "new");
    WriteFileBytes(installed_, "old");
  }

  // What `failures` failed attempts log. The folder is deleted only at its first level, and each
  // attempt begins there.
  static std::vector<std::wstring> FailedAttempts(int failures) {
    std::vector<std::wstring> records;
    for (int attempt = 0; attempt < failures; ++attempt) {
      AddAttempt(records);
      records.push_back(L"4|Fail to copy file = 32");
      records.push_back(L"3|Copy fail, sleep 3 seconds and retry.");
    }
    return records;
  }

  static void AddAttempt(std::vector<std::wstring>& records) {
    records.insert(records.end(), {L"2|Copy folder from {base}\\Updater\\App to {base}",
                                   L"2|Delete Dir : {base}\\Sub",
                                   L"2|Copy folder from {base}\\Updater\\App\\Sub to {base}\\Sub",
                                   L"2|Copy file from {base}\\Updater\\App\\Sub\\held.dll to "
                                   L"{base}\\Sub\\held.dll"});
  }

  InstalledProduct product_;
  const std::wstring staged_ = product_.App() + L"\\Sub\\held.dll";
  const std::wstring installed_ = product_.Base() + L"\\Sub\\held.dll";
};

TEST_F(RetriedInstallCopyTest, SucceedsAtTheTenthAttempt) {
  HeldFile lock(installed_);
  const QuietDesktop desktop([&](int sleep) {
    if (sleep == 9) {
      lock.Release();
    }
  });

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  std::vector<std::wstring> expected = FailedAttempts(9);
  AddAttempt(expected);
  expected.push_back(L"2|Copy complete.");
  EXPECT_EQ(product_.Transcript(), expected);
  EXPECT_EQ(desktop.Sleeps(), std::vector<DWORD>(9, 3000));
  EXPECT_TRUE(desktop.Boxes().empty());
  EXPECT_EQ(ReadFileBytes(installed_), "new");
}

TEST_F(RetriedInstallCopyTest, GivesUpAfterTheTenthAttemptAndItsWait) {
  HeldFile lock(installed_);
  const QuietDesktop desktop([&](int sleep) {
    if (sleep == 10) {
      EXPECT_TRUE(desktop.Boxes().empty());
      lock.Release();  // too late
    }
  });

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  std::vector<std::wstring> expected = FailedAttempts(10);
  expected.push_back(L"4|Fail to copy folder.");
  EXPECT_EQ(product_.Transcript(), expected);
  EXPECT_EQ(desktop.Sleeps(), std::vector<DWORD>(10, 3000));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(installed_)));
}

TEST_F(RetriedInstallCopyTest, NamesTheFileThatFailedLast) {
  WriteFileBytes(product_.App() + L"\\Sub\\z.dll", "new");
  HeldFile lock(installed_);
  const QuietDesktop desktop([&](int sleep) {
    if (sleep == 9) {
      lock.Release();
    }
  });
  INTERPOSER(CopyFileW) copy(
      [&](const wchar_t* source, const wchar_t* target, BOOL fail_if_there) -> BOOL {
        if (target != product_.Base() + L"\\Sub\\z.dll") {
          return copy.Original()(source, target, fail_if_there);
        }
        ::SetLastError(ERROR_DISK_FULL);
        return FALSE;
      });

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(product_.Base() + L"\\Sub\\z.dll")));
}

TEST_F(RetriedInstallCopyTest, NamesTheFolderWhoseCopyCouldNotSeeAllOfItsSource) {
  const QuietDesktop desktop;
  FakeListing listing;
  listing.BreakOff(product_.App() + L"\\Sub", ERROR_NETNAME_DELETED);

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_EQ(desktop.Sleeps(), std::vector<DWORD>(10, 3000));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(product_.Base() + L"\\Sub")));
}

// The installed files are gone by then, so it must not look like a success.
TEST_F(RetriedInstallCopyTest, FailsWhenTheStagedFolderCannotBeListedAtAll) {
  WriteFileBytes(product_.Base() + L"\\a.exe", "old");
  const QuietDesktop desktop;
  FakeListing listing;
  listing.Forbid(product_.App(), ERROR_ACCESS_DENIED);

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  std::vector<std::wstring> expected = {L"2|Delete OK : {base}\\a.exe"};
  for (int attempt = 0; attempt < 10; ++attempt) {
    expected.insert(expected.end(),
                    {L"2|Copy folder from {base}\\Updater\\App to {base}",
                     L"4|Fail to copy file = 5", L"3|Copy fail, sleep 3 seconds and retry."});
  }
  expected.push_back(L"4|Fail to copy folder.");
  EXPECT_EQ(product_.Transcript(), expected);
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(product_.Base())));
}

}  // namespace
}  // namespace nhupdate_test
