#include "base/held_folder.h"

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

using nhupdate::CHeldFolder;
using nhupdate::PlaceSeenFrom;

class HeldFolderTest : public testing::Test {
 protected:
  HeldFolderTest() { CreateFolders(inner_); }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring inner_ = outer_ + L"\\Middle\\Inner";
};

TEST_F(HeldFolderTest, IsAtItselfAndBelowEveryFolderAboveIt) {
  const CHeldFolder held(inner_);

  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(inner_, inner_)));
  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(outer_ + L"\\Middle", inner_)));
  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(outer_, inner_)));
  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(scratch_.Path(), inner_)));
}

TEST_F(HeldFolderTest, IsBelowWhateverTheLetterCase) {
  const CHeldFolder held(outer_ + L"\\MIDDLE\\inner");

  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(scratch_.Path() + L"\\OUTER", outer_ + L"\\MIDDLE\\inner")));
}

TEST_F(HeldFolderTest, IsBelowADrivesRoot) {
  const CHeldFolder held(inner_);

  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(inner_.substr(0, 2), inner_)));
}

TEST_F(HeldFolderTest, IsNotBelowAFolderBesideIt) {
  CreateFolders(outer_ + L"\\Mid");
  const CHeldFolder held(inner_);

  EXPECT_FALSE(held.IsPlainAt(PlaceSeenFrom(outer_ + L"\\Mid", inner_)));
  EXPECT_FALSE(held.IsPlainAt(PlaceSeenFrom(inner_ + L"\\Below", inner_)));
}

TEST_F(HeldFolderTest, IsBelowNothingWhenItIsNotThere) {
  const CHeldFolder held(outer_ + L"\\Missing");

  EXPECT_FALSE(held.IsPlainAt(PlaceSeenFrom(outer_, outer_ + L"\\Missing")));
  EXPECT_EQ(held.Error(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(HeldFolderTest, TellsWhyItCouldNotBeOpened) {
  INTERPOSER(CreateFileW) open(
      [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) -> HANDLE {
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
      });

  const CHeldFolder held(inner_);

  EXPECT_EQ(held.Error(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
}

TEST_F(HeldFolderTest, HasNoErrorWhenItIsOpen) {
  ::SetLastError(ERROR_ACCESS_DENIED);

  const CHeldFolder held(inner_);

  EXPECT_EQ(held.Error(), std::nullopt);
}

TEST_F(HeldFolderTest, IsNotBelowAnAnchorThatCannotBeOpened) {
  const CHeldFolder held(inner_);
  INTERPOSER(CreateFileW) open(
      [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) -> HANDLE {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
      });

  EXPECT_FALSE(held.IsPlainAt(PlaceSeenFrom(outer_, inner_)));
}

TEST_F(HeldFolderTest, CannotBeRemovedOrRenamedWhileItIsHeld) {
  {
    const CHeldFolder held(inner_);
    EXPECT_FALSE(::RemoveDirectoryW(inner_.c_str()));
    EXPECT_FALSE(::MoveFileW(inner_.c_str(), (inner_ + L" moved").c_str()));
  }

  EXPECT_TRUE(::RemoveDirectoryW(inner_.c_str()));
}

TEST_F(HeldFolderTest, CanBeWorkedInWhileItIsHeld) {
  const CHeldFolder held(inner_);

  WriteFileBytes(inner_ + L"\\file", "x");

  EXPECT_TRUE(::DeleteFileW((inner_ + L"\\file").c_str()));
}

TEST_F(HeldFolderTest, OpensTheFolderItselfAndTheAnchorAsItIsReached) {
  std::vector<DWORD> flags;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flag,
                                   HANDLE model) {
    EXPECT_EQ(sharing & FILE_SHARE_DELETE, 0U);
    flags.push_back(flag & FILE_FLAG_OPEN_REPARSE_POINT);
    return open.Original()(path, access, sharing, security, creation, flag, model);
  });

  const CHeldFolder held(inner_);
  EXPECT_TRUE(held.IsPlainAt(PlaceSeenFrom(outer_, inner_)));

  EXPECT_THAT(flags, testing::ElementsAre(FILE_FLAG_OPEN_REPARSE_POINT, 0U));
}

// What Windows says about the folder itself. FAT and exFAT don't know the question for a tag.
TEST_F(HeldFolderTest, IsNotPlainWhenItIsOrMayBeALink) {
  struct Case {
    const char* name;
    bool attributes_are_known;
    DWORD attributes;
    bool tag_is_known;
    DWORD reparse_tag;
    bool expected;
  };
  constexpr DWORD kFolder = FILE_ATTRIBUTE_DIRECTORY;
  constexpr DWORD kPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  const Case cases[] = {
      {"a folder", true, kFolder, true, 0, true},
      {"a folder on a FAT volume", true, kFolder, false, 0, true},
      {"a junction", true, kPoint, true, 0xA0000003, false},
      {"a symbolic link", true, kPoint, true, 0xA000000C, false},
      {"a cloud placeholder", true, kPoint, true, 0x9000001A, true},
      {"a reparse point of unknown kind", true, kPoint, false, 0, false},
      {"nothing known", false, kFolder, false, 0, false},
      {"no attributes known", false, kFolder, true, 0, false},
  };

  for (const Case& c : cases) {
    const CHeldFolder held(inner_);
    INTERPOSER(GetFileInformationByHandleEx) information(
        [&](HANDLE, FILE_INFO_BY_HANDLE_CLASS what, void* answer, DWORD) -> BOOL {
          if (what == FileBasicInfo && c.attributes_are_known) {
            static_cast<FILE_BASIC_INFO*>(answer)->FileAttributes = c.attributes;
            return TRUE;
          }
          if (what == FileAttributeTagInfo && c.tag_is_known) {
            *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(answer) = {c.attributes, c.reparse_tag};
            return TRUE;
          }
          ::SetLastError(ERROR_INVALID_PARAMETER);
          return FALSE;
        });

    EXPECT_EQ(held.IsPlainAt(PlaceSeenFrom(outer_, inner_)), c.expected) << c.name;
  }
}

// Where the folder and the anchor really are, as Windows says in this order.
TEST_F(HeldFolderTest, IsNotBelowWhenALinkLeadsElsewhere) {
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
    const CHeldFolder held(inner_);

    EXPECT_EQ(held.IsPlainAt(PlaceSeenFrom(outer_, inner_)), c.expected)
        << testing::PrintToString(c.folder) << " below " << testing::PrintToString(c.anchor);
  }
}

}  // namespace
}  // namespace nhupdate_test
