#include "base/pinned_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::CPinnedFolder;

class PinnedFolderTest : public testing::Test {
 protected:
  PinnedFolderTest() { CreateFolders(inner_); }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring inner_ = outer_ + L"\\Middle\\Inner";
};

TEST_F(PinnedFolderTest, IsAtItselfAndBelowEveryFolderAboveIt) {
  const CPinnedFolder pinned(inner_);

  EXPECT_TRUE(pinned.IsAtOrBelow(inner_));
  EXPECT_TRUE(pinned.IsAtOrBelow(outer_ + L"\\Middle"));
  EXPECT_TRUE(pinned.IsAtOrBelow(outer_));
  EXPECT_TRUE(pinned.IsAtOrBelow(scratch_.Path()));
}

TEST_F(PinnedFolderTest, IsBelowWhateverTheLetterCase) {
  const CPinnedFolder pinned(outer_ + L"\\MIDDLE\\inner");

  EXPECT_TRUE(pinned.IsAtOrBelow(scratch_.Path() + L"\\OUTER"));
}

TEST_F(PinnedFolderTest, IsBelowADrivesRoot) {
  const CPinnedFolder pinned(inner_);

  EXPECT_TRUE(pinned.IsAtOrBelow(inner_.substr(0, 2)));
}

TEST_F(PinnedFolderTest, IsNotBelowAFolderBesideIt) {
  CreateFolders(outer_ + L"\\Mid");
  const CPinnedFolder pinned(inner_);

  EXPECT_FALSE(pinned.IsAtOrBelow(outer_ + L"\\Mid"));
  EXPECT_FALSE(pinned.IsAtOrBelow(inner_ + L"\\Below"));
}

TEST_F(PinnedFolderTest, IsBelowNothingWhenItIsNotThere) {
  const CPinnedFolder pinned(outer_ + L"\\Missing");

  EXPECT_FALSE(pinned.IsAtOrBelow(outer_));
  EXPECT_EQ(pinned.Error(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(PinnedFolderTest, TellsWhyItCouldNotBeOpened) {
  INTERPOSER(CreateFileW) open(
      [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) -> HANDLE {
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
      });

  const CPinnedFolder pinned(inner_);

  EXPECT_EQ(pinned.Error(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
}

TEST_F(PinnedFolderTest, HasNoErrorWhenItIsOpen) {
  ::SetLastError(ERROR_ACCESS_DENIED);

  const CPinnedFolder pinned(inner_);

  EXPECT_EQ(pinned.Error(), std::nullopt);
}

TEST_F(PinnedFolderTest, IsNotBelowAnAnchorThatCannotBeOpened) {
  const CPinnedFolder pinned(inner_);
  INTERPOSER(CreateFileW) open(
      [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) -> HANDLE {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
      });

  EXPECT_FALSE(pinned.IsAtOrBelow(outer_));
}

TEST_F(PinnedFolderTest, CannotBeRemovedOrRenamedWhileItIsPinned) {
  {
    const CPinnedFolder pinned(inner_);
    EXPECT_FALSE(::RemoveDirectoryW(inner_.c_str()));
    EXPECT_FALSE(::MoveFileW(inner_.c_str(), (inner_ + L" moved").c_str()));
  }

  EXPECT_TRUE(::RemoveDirectoryW(inner_.c_str()));
}

TEST_F(PinnedFolderTest, CanBeWorkedInWhileItIsPinned) {
  const CPinnedFolder pinned(inner_);

  WriteFileBytes(inner_ + L"\\file", "x");

  EXPECT_TRUE(::DeleteFileW((inner_ + L"\\file").c_str()));
}

TEST_F(PinnedFolderTest, OpensTheFolderItselfAndTheAnchorAsItIsReached) {
  std::vector<DWORD> flags;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flag,
                                   HANDLE model) {
    EXPECT_EQ(sharing & FILE_SHARE_DELETE, 0U);
    flags.push_back(flag & FILE_FLAG_OPEN_REPARSE_POINT);
    return open.Original()(path, access, sharing, security, creation, flag, model);
  });

  const CPinnedFolder pinned(inner_);
  EXPECT_TRUE(pinned.IsAtOrBelow(outer_));

  EXPECT_THAT(flags, testing::ElementsAre(FILE_FLAG_OPEN_REPARSE_POINT, 0U));
}

// What Windows says about the folder itself.
TEST_F(PinnedFolderTest, IsNotBelowWhenItIsALink) {
  struct Case {
    const char* name;
    BOOL can_be_asked;
    DWORD attributes;
    DWORD reparse_tag;
    bool expected;
  };
  constexpr DWORD kPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  const Case cases[] = {
      {"a folder", TRUE, FILE_ATTRIBUTE_DIRECTORY, 0, true},
      {"a junction", TRUE, kPoint, 0xA0000003, false},
      {"a symbolic link", TRUE, kPoint, 0xA000000C, false},
      {"a cloud placeholder", TRUE, kPoint, 0x9000001A, true},
      {"not known", FALSE, FILE_ATTRIBUTE_DIRECTORY, 0, false},
  };

  for (const Case& c : cases) {
    const CPinnedFolder pinned(inner_);
    INTERPOSER(GetFileInformationByHandleEx) information(
        [&](HANDLE, FILE_INFO_BY_HANDLE_CLASS what, void* answer, DWORD) -> BOOL {
          EXPECT_EQ(what, FileAttributeTagInfo);
          *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(answer) = {c.attributes, c.reparse_tag};
          return c.can_be_asked;
        });

    EXPECT_EQ(pinned.IsAtOrBelow(outer_), c.expected) << c.name;
  }
}

// Where the folder and the anchor really are, as Windows says in this order.
TEST_F(PinnedFolderTest, IsNotBelowWhenALinkLeadsElsewhere) {
  struct Case {
    const wchar_t* anchor;
    const wchar_t* folder;
    bool expected;
  };
  const Case cases[] = {
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Outer\\Middle\\Inner", true},
      // The anchor itself may be reached by a link.
      {L"\\Device\\V9\\Real", L"\\Device\\V9\\Real\\Middle\\Inner", true},
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Windows", false},
      {L"\\Device\\V1\\Outer", L"\\Device\\V1\\Outer\\Inner", false},
      {L"\\Device\\V1\\Outer", L"\\Device\\V2\\Outer\\Middle\\Inner", false},
      {L"\\Device\\V1\\Outer", L"", false},
      {L"", L"\\Device\\V1\\Outer\\Middle\\Inner", false},
      {L"", L"", false},
  };

  for (const Case& c : cases) {
    FakeListing listing;
    listing.LeadElsewhere(inner_, c.folder);
    listing.LeadElsewhere(outer_, c.anchor);
    const CPinnedFolder pinned(inner_);

    EXPECT_EQ(pinned.IsAtOrBelow(outer_), c.expected)
        << testing::PrintToString(c.folder) << " below " << testing::PrintToString(c.anchor);
  }
}

}  // namespace
}  // namespace nhupdate_test
