#include "install/empty_folders.h"

#include "install/folder_removal.h"
#include "tests/support/fake_link.h"
#include "tests/support/fake_listing.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {
namespace {

class EmptyFoldersTest : public InstallTest {
 protected:
  EmptyFoldersTest() { CreateFolders(folder_); }

  bool Collect() { return CollectEmptyFolders(folder_, found_, log_.Log()); }

  // Expects that those folders were found and logged, in that order.
  void ExpectFound(const Lines& names) const {
    Lines records;
    Lines paths;
    for (const std::wstring& name : names) {
      records.push_back(L"2|Remove empty folder : {root}\\top\\" + name);
      paths.push_back(folder_ + L"\\" + name);
    }
    EXPECT_EQ(log_.Records(), records);
    EXPECT_EQ(found_, paths);
  }

  const std::wstring folder_ = root_ + L"\\top";
  Lines found_;
};

// Removed in that order each is empty when its turn comes.
TEST_F(EmptyFoldersTest, AreListedTheDeepestFirstAndNotDeleted) {
  CreateFolders(folder_ + L"\\a\\b\\c");
  CreateFolders(folder_ + L"\\a\\d");
  CreateFolders(folder_ + L"\\e %s%n");
  const Lines before = ListTree(folder_);

  EXPECT_TRUE(Collect());

  ExpectFound({L"a\\b\\c", L"a\\b", L"a\\d", L"a", L"e %s%n"});
  EXPECT_EQ(ListTree(folder_), before);
  for (const std::wstring& folder : found_) {
    EXPECT_TRUE(::RemoveDirectoryW(folder.c_str()));
  }
}

TEST_F(EmptyFoldersTest, AreAddedToThoseFoundBefore) {
  CreateFolders(folder_ + L"\\a");
  found_ = {L"before"};

  EXPECT_TRUE(Collect());

  EXPECT_THAT(found_, ElementsAre(L"before", folder_ + L"\\a"));
}

TEST_F(EmptyFoldersTest, NeverIncludeTheFolderItself) {
  EXPECT_TRUE(Collect());
  EXPECT_TRUE(CollectEmptyFolders(root_ + L"\\none", found_, log_.Log()));

  ExpectFound({});
}

TEST_F(EmptyFoldersTest, AreOnlyThoseWithoutAFileAtAnyDepth) {
  CreateFolders(folder_ + L"\\a\\empty");
  WriteFileBytes(folder_ + L"\\a\\full\\deep\\file", "");
  WriteFileBytes(folder_ + L"\\b file", "x");
  CreateFolders(folder_ + L"\\z");

  EXPECT_FALSE(Collect());

  ExpectFound({L"a\\empty", L"z"});
}

TEST_F(EmptyFoldersTest, HoldFilesOfNoKind) {
  WriteFileBytes(folder_ + L"\\a\\file", "");
  for (const DWORD attributes : std::initializer_list<DWORD>{
           FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM, FILE_ATTRIBUTE_READONLY,
           FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM}) {
    ::SetFileAttributesW((folder_ + L"\\a\\file").c_str(), attributes);

    EXPECT_FALSE(Collect()) << attributes;
  }
  ExpectFound({});
}

TEST_F(EmptyFoldersTest, AreNoneOfWhichOnlyAPartWasSeen) {
  WriteFileBytes(folder_ + L"\\full\\file", "x");
  FakeListing listing;
  listing.BreakOff(folder_ + L"\\full", ERROR_NETNAME_DELETED);

  EXPECT_FALSE(Collect());

  ExpectFound({});
}

// A folder that can't be listed counts as empty. As long as that lasts the removal leaves it alone;
// later it deletes all that it finds there.
TEST_F(EmptyFoldersTest, IncludeOneThatCannotBeListed) {
  WriteFileBytes(folder_ + L"\\secret\\file", "x");
  {
    FakeListing listing;
    listing.Forbid(folder_ + L"\\secret", ERROR_ACCESS_DENIED);

    EXPECT_TRUE(Collect());

    EXPECT_FALSE(DeleteFolderTree(folder_ + L"\\secret", root_));
  }
  ExpectFound({L"secret"});
  EXPECT_TRUE(Exists(folder_ + L"\\secret\\file"));
  EXPECT_TRUE(DeleteFolderTree(folder_ + L"\\secret", root_));
}

// What is in "x.." is looked for in "x.", which could be a link to the folder above: the search
// would go round until the path is too long, for each such name once more. "x." leads nowhere.
TEST_F(EmptyFoldersTest, AreNoneWhoseNamesLeadToAnotherFolder) {
  const std::wstring exact = L"\\\\?\\" + folder_;
  for (const wchar_t* name : {L"\\x.", L"\\x.\\behind the link", L"\\x.."}) {
    ASSERT_TRUE(::CreateDirectoryW((exact + name).c_str(), nullptr));
  }

  EXPECT_FALSE(Collect());

  ExpectFound({L"x."});
  RemoveTree(exact);
}

TEST_F(EmptyFoldersTest, DoNotIncludeLinksNorWhatIsBehindThem) {
  CreateFolders(root_ + L"\\elsewhere\\empty");
  constexpr DWORD kNoTag = 0;
  for (const DWORD tag :
       std::initializer_list<DWORD>{IO_REPARSE_TAG_MOUNT_POINT, IO_REPARSE_TAG_SYMLINK, kNoTag}) {
    const FakeLink link(folder_ + L"\\link", root_ + L"\\elsewhere", tag);
    const FakeListing listing;

    EXPECT_FALSE(Collect()) << tag;

    EXPECT_THAT(listing.Patterns(), ElementsAre(folder_ + L"\\*.*")) << tag;
  }
  ExpectFound({});
}

// Placeholders of cloud storage are no links. A tag without the attribute means nothing.
TEST_F(EmptyFoldersTest, IncludeReparsePointsThatAreNoLinks) {
  CreateFolders(folder_ + L"\\cloud\\inner");
  CreateFolders(folder_ + L"\\plain");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\cloud", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_CLOUD);
  listing.Disguise(folder_ + L"\\plain", 0, IO_REPARSE_TAG_MOUNT_POINT);

  EXPECT_TRUE(Collect());

  ExpectFound({L"cloud\\inner", L"cloud", L"plain"});
}

}  // namespace
}  // namespace nhupdate_test
