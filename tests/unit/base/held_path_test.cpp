// Whether a folder may hold what a path leads to, whatever the two are called.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "base/held_folder.h"
#include "base/windows.h"
#include "tests/support/current_folder.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::CHeldFolder;

class HeldPathTest : public testing::Test {
 protected:
  HeldPathTest() { CreateFolders(inner_); }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring inner_ = outer_ + L"\\Middle\\Inner";
};

TEST_F(HeldPathTest, IsTheFolderItselfOrBelowIt) {
  const CHeldFolder held(outer_);

  EXPECT_TRUE(held.MayHold(outer_));
  EXPECT_TRUE(held.MayHold(inner_));
}

TEST_F(HeldPathTest, IsNeitherAboveNorBesideTheFolder) {
  CreateFolders(outer_ + L"\\Mid");
  CreateFolders(outer_ + L" too");
  const CHeldFolder held(outer_ + L"\\Middle");

  EXPECT_FALSE(held.MayHold(outer_));
  EXPECT_FALSE(held.MayHold(outer_ + L"\\Mid"));
  EXPECT_FALSE(CHeldFolder(outer_).MayHold(outer_ + L" too"));
}

TEST_F(HeldPathTest, IsFoundUnderOtherNames) {
  const CurrentFolder drive(outer_.substr(0, 3));
  const CHeldFolder from_the_drive(outer_.substr(2));
  const CHeldFolder in_capitals(scratch_.Path() + L"\\OUTER");
  const CHeldFolder roundabout(outer_ + L"\\Middle\\..\\.");

  EXPECT_TRUE(from_the_drive.MayHold(inner_));
  EXPECT_TRUE(in_capitals.MayHold(inner_));
  EXPECT_TRUE(roundabout.MayHold(inner_));
}

TEST_F(HeldPathTest, IsNotInAFolderThatIsNotThere) {
  EXPECT_FALSE(CHeldFolder(outer_ + L"\\Missing").MayHold(inner_));
  EXPECT_FALSE(CHeldFolder(outer_ + L"\\Missing\\Too").MayHold(inner_));
}

TEST_F(HeldPathTest, MayBeAnywhereWhenOneOfTheTwoCannotBeOpened) {
  std::wstring closed;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                                   HANDLE model) -> HANDLE {
    if (path != closed) {
      return open.Original()(path, access, sharing, security, creation, flags, model);
    }
    ::SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
  });
  const std::wstring beside = scratch_.Path() + L"\\Beside";
  CreateFolders(beside);

  for (const std::wstring& path : {outer_, beside}) {
    closed = path;

    EXPECT_TRUE(CHeldFolder(outer_).MayHold(beside)) << testing::PrintToString(path);
  }
  closed.clear();
  EXPECT_FALSE(CHeldFolder(outer_).MayHold(beside));
}

// The folder is opened as what it is, the path as it is walked.
TEST_F(HeldPathTest, IsLookedForBehindLinksButNotBehindTheFolderItself) {
  std::map<std::wstring, DWORD> flags;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flag,
                                   HANDLE model) {
    flags[path] = flag & FILE_FLAG_OPEN_REPARSE_POINT;
    return open.Original()(path, access, sharing, security, creation, flag, model);
  });

  EXPECT_TRUE(CHeldFolder(outer_).MayHold(inner_));

  EXPECT_EQ(flags[outer_], static_cast<DWORD>(FILE_FLAG_OPEN_REPARSE_POINT));
  EXPECT_EQ(flags[inner_], 0U);
}

// What Windows says of the two, which a link on the way has brought elsewhere.
TEST_F(HeldPathTest, IsJudgedByWhereTheTwoReallyAre) {
  struct Case {
    const wchar_t* folder;
    const wchar_t* path;
    bool expected;
  };
  const Case cases[] = {
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub", true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub\\App", true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\HUB\\App", true},
      {L"\\Device\\V1\\Gr\u00FCn", L"\\Device\\V1\\GR\u00DCN\\App", true},
      {L"\\Device\\V1\\Hub", L"\\Device\\V1\\Hub 2", false},
      {L"\\Device\\V1\\Hub\\App", L"\\Device\\V1\\Hub", false},
      {L"\\Device\\V1\\Hub", L"\\Device\\V2\\Hub", false},
      {L"", L"\\Device\\V1\\Hub", true},
      {L"\\Device\\V1\\Hub", L"", true},
  };

  for (const Case& c : cases) {
    FakeListing listing;
    listing.LeadElsewhere(outer_, c.folder);
    listing.LeadElsewhere(scratch_.Path(), c.path);
    const CHeldFolder held(outer_);

    EXPECT_EQ(held.MayHold(scratch_.Path()), c.expected)
        << testing::PrintToString(c.path) << " in " << testing::PrintToString(c.folder);
  }
}

}  // namespace
}  // namespace nhupdate_test
