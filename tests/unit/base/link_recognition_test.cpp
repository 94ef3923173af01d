// Which entries of a folder stand for another place.

#include <gtest/gtest.h>

#include "base/folder_place.h"

namespace nhupdate_test {
namespace {

using nhupdate::MeansLink;

struct LinkCase {
  const char* name;
  DWORD attributes;
  DWORD reparse_tag;
  bool is_link;
};

constexpr DWORD kNoTag = 0;
constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kFilePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;

constexpr LinkCase kLinkCases[] = {
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
    {"a plain folder with a leftover tag", FILE_ATTRIBUTE_DIRECTORY, 0xA0000003, false},
    {"a plain file", FILE_ATTRIBUTE_ARCHIVE, kNoTag, false},
};

TEST(MeansLinkTest, KnowsLinksFromOtherSpecialEntries) {
  for (const LinkCase& c : kLinkCases) {
    EXPECT_EQ(MeansLink(c.attributes, c.reparse_tag), c.is_link) << c.name;
  }
}

}  // namespace
}  // namespace nhupdate_test
