// What is a link, and folders that are held. The places are in folder_place_test.cpp.

#include "base/folder_place.h"

#include "tests/support/short_path_policy.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

constexpr DWORD kNoTag = 0;
constexpr DWORD kFolder = FILE_ATTRIBUTE_DIRECTORY;
constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kFilePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;

TEST(MeansLinkTest, KnowsLinksFromOtherSpecialEntries) {
  constexpr struct {
    const char* name;
    DWORD attributes;
    DWORD reparse_tag;
    bool is_link;
  } cases[] = {
      {"a junction or mount point", kFolderPoint, 0xA0000003, true},
      {"a symbolic link to a folder", kFolderPoint, 0xA000000C, true},
      {"a symbolic link to a file", kFilePoint, 0xA000000C, true},
      {"a link made by the Linux subsystem", kFilePoint, 0xA000001D, true},
      {"another maker's name surrogate", kFolderPoint, 0x20001234, true},
      {"a folder that doesn't say what it is", kFolderPoint, kNoTag, true},
      {"a file that doesn't say what it is", kFilePoint, kNoTag, true},
      {"a cloud placeholder", kFilePoint, 0x9000001A, false},
      {"a cloud placeholder of another provider", kFolderPoint, 0x9000601A, false},
      {"an older cloud placeholder", kFolderPoint, 0x80000021, false},
      {"a deduplicated file", kFilePoint, 0x80000013, false},
      {"a compressed system file", kFilePoint, 0x80000017, false},
      {"an app alias", kFilePoint, 0x8000001B, false},
      {"a plain folder with a leftover tag", kFolder, 0xA0000003, false},
      {"a plain file", FILE_ATTRIBUTE_ARCHIVE, kNoTag, false},
  };

  for (const auto& c : cases) {
    EXPECT_EQ(MeansLink(c.attributes, c.reparse_tag), c.is_link) << c.name;
  }
}

// FAT and exFAT refuse the question for a tag with "invalid parameter", as any file system does
// that knows no links.
TEST(IsLinkTest, AsksForATagOnlyWhereThereMayBeOne) {
  constexpr struct {
    const char* name;
    std::optional<DWORD> attributes;
    std::optional<DWORD> reparse_tag;
    bool is_link;
  } cases[] = {
      {"a folder", kFolder, kNoTag, false},
      {"a folder on a FAT volume", kFolder, std::nullopt, false},
      {"a junction", kFolderPoint, 0xA0000003, true},
      {"a symbolic link", kFolderPoint, 0xA000000C, true},
      {"a cloud placeholder", kFolderPoint, 0x9000001A, false},
      {"a reparse point of unknown kind", kFolderPoint, std::nullopt, true},
      {"nothing known", std::nullopt, std::nullopt, true},
      {"no attributes known", std::nullopt, kNoTag, true},
  };
  const ScratchFolder scratch;
  const UniqueFile opened = HoldFolderItself(scratch.Path());

  for (const auto& c : cases) {
    INTERPOSER(GetFileInformationByHandleEx) information(
        [&](HANDLE file, int what, void* answer, DWORD) -> BOOL {
          EXPECT_EQ(file, opened.Get());
          if (what == FileBasicInfo && c.attributes) {
            static_cast<FILE_BASIC_INFO*>(answer)->FileAttributes = *c.attributes;
            return TRUE;
          }
          if (what == FileAttributeTagInfo && c.reparse_tag) {
            *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(answer) = {c.attributes.value_or(kFolder),
                                                              *c.reparse_tag};
            return TRUE;
          }
          ::SetLastError(ERROR_INVALID_PARAMETER);
          return FALSE;
        });

    EXPECT_EQ(IsLink(opened), c.is_link) << c.name;
    EXPECT_EQ(IsPlainFolder(opened), !c.is_link) << c.name;
  }
}

// A hard link to a file is no link, and really lies at its place.
TEST(IsPlainFolderTest, SaysNoToAFileAndToWhatIsNotOpen) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\file", "x");
  const UniqueFile file = LookAtItself(scratch.Path() + L"\\file");

  EXPECT_TRUE(file.IsValid());
  EXPECT_FALSE(IsPlainFolder(file));
  EXPECT_FALSE(IsPlainFolder(UniqueFile()));
}

TEST(HoldFolderTest, OpensForListingAndLetsNobodyRenameOrRemove) {
  using Opening =
      std::tuple<std::wstring, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE>;
  const ScratchFolder scratch;
  std::vector<Opening> openings;
  const INTERPOSER(CreateFileW) open(
      [&](auto... arguments) { openings.emplace_back(arguments...); });

  EXPECT_TRUE(HoldFolderItself(scratch.Path()).IsValid());
  EXPECT_TRUE(HoldFolder(scratch.Path()).IsValid());

  constexpr DWORD kNotDelete = FILE_SHARE_READ | FILE_SHARE_WRITE;
  constexpr DWORD kTarget = FILE_FLAG_BACKUP_SEMANTICS;
  constexpr DWORD kItself = kTarget | FILE_FLAG_OPEN_REPARSE_POINT;
  EXPECT_THAT(openings, ElementsAre(Opening(scratch.Path(), FILE_LIST_DIRECTORY, kNotDelete,
                                            nullptr, OPEN_EXISTING, kItself, nullptr),
                                    Opening(scratch.Path(), FILE_LIST_DIRECTORY, kNotDelete,
                                            nullptr, OPEN_EXISTING, kTarget, nullptr)));
}

TEST(HoldFolderTest, OpensAFolderWithALongPath) {
  const ScratchFolder scratch;
  const std::wstring folder = LongPathBelow(scratch.Path());
  CreateFolders(folder);
  const ShortPathPolicy policy;

  EXPECT_TRUE(HoldFolderItself(folder).IsValid());
  EXPECT_TRUE(HoldFolder(folder).IsValid());
}

}  // namespace
}  // namespace nhupdate_test
