#include "install/folder_removal.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <initializer_list>

#include "base/existence.h"
#include "tests/support/answers.h"
#include "tests/support/fake_link.h"
#include "tests/support/fake_listing.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/support/open_handles.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::CFolderRemoval;
using nhupdate::DeleteFolderTree;
using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

class FolderRemovalTest : public InstallTest {
 protected:
  FolderRemovalTest() { CreateFolders(folder_); }

  [[nodiscard]] bool Delete() const { return DeleteFolderTree(folder_, base_); }

  const std::wstring folder_ = base_ + L"\\top";
  const std::wstring elsewhere_ = root_ + L"\\elsewhere";
};

TEST_F(FolderRemovalTest, TakesAllThatIsInTheFolder) {
  WriteFiles(folder_, {L"\\a", L"\\b\\c\\d", L"\\%s \u65E5\u672C\\.g"});
  CreateFolders(folder_ + L"\\e\\f");
  const FakeListing listing;

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
  EXPECT_EQ(listing.Patterns().front(), folder_ + L"/*.*");
}

TEST_F(FolderRemovalTest, WorksInAndOutsideOfTheProductsFolder) {
  for (const std::wstring& owned_root : {base_, folder_, root_ + L"\\other", std::wstring()}) {
    WriteFileBytes(folder_ + L"\\a\\b", "x");

    EXPECT_TRUE(DeleteFolderTree(folder_, owned_root));

    EXPECT_FALSE(Exists(folder_));
  }
}

// FAT and exFAT don't know what a reparse point is, and say so; nor do they know the newer
// deletion.
TEST_F(FolderRemovalTest, WorksOnAFileSystemThatKnowsNoLinks) {
  WriteFiles(folder_, {L"\\a\\b", L"\\a\\read-only"});
  ::SetFileAttributesW((folder_ + L"\\a\\read-only").c_str(), FILE_ATTRIBUTE_READONLY);
  const auto refuse = Answers(FALSE, ERROR_INVALID_PARAMETER);
  INTERPOSER(GetFileInformationByHandleEx) get(
      [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, auto... rest) {
        return kind == FileAttributeTagInfo ? refuse() : get.Original()(file, kind, rest...);
      });
  INTERPOSER(SetFileInformationByHandle) set(
      [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, auto... rest) {
        const bool is_known = kind == FileDispositionInfo || kind == FileBasicInfo;
        return is_known ? set.Original()(file, kind, rest...) : refuse();
      });

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(FolderRemovalTest, TakesFilesOfAllAttributes) {
  for (const DWORD attributes : std::initializer_list<DWORD>{
           FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
           FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN}) {
    const std::wstring file = folder_ + L"\\inner\\" + std::to_wstring(attributes);
    WriteFileBytes(file, "x");
    ::SetFileAttributesW(file.c_str(), attributes);
  }

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

// Only files that are listed as read-only are changed; folders keep their attributes.
TEST_F(FolderRemovalTest, ClearsTheReadOnlyAttributeAndNoOther) {
  const std::wstring file = folder_ + L"\\inner\\file";
  WriteFiles(folder_, {L"\\inner\\file", L"\\inner\\other"});
  FakeListing listing;
  listing.Disguise(file, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN, 0);
  listing.Disguise(folder_ + L"\\inner", FILE_ATTRIBUTE_READONLY, 0);
  std::vector<DWORD> attributes_set;
  INTERPOSER(SetFileInformationByHandle) set(
      [&](HANDLE handle, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
        if (kind == FileBasicInfo) {
          attributes_set.push_back(static_cast<FILE_BASIC_INFO*>(information)->FileAttributes);
        }
        return set.Original()(handle, kind, information, size);
      });

  EXPECT_TRUE(Delete());

  ASSERT_EQ(attributes_set.size(), 1u);
  EXPECT_EQ(attributes_set[0] & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_NE(attributes_set[0] & FILE_ATTRIBUTE_HIDDEN, 0u);
}

// The listing of a file of several names can be out of date.
TEST_F(FolderRemovalTest, TakesAReadOnlyFileThatIsListedAsAnOrdinaryOne) {
  WriteFileBytes(folder_ + L"\\file", "x");
  ::SetFileAttributesW((folder_ + L"\\file").c_str(), FILE_ATTRIBUTE_READONLY);
  INTERPOSER(FindNextFileW) next([&](HANDLE search, WIN32_FIND_DATAW* entry) {
    const BOOL is_found = next.Original()(search, entry);
    entry->dwFileAttributes &= ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    return is_found;
  });

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(FolderRemovalTest, TakesAllButAHeldFileAndTheFoldersAboveIt) {
  WriteFiles(folder_, {L"\\a", L"\\b\\held", L"\\b\\other", L"\\c\\d"});
  HeldFile lock(folder_ + L"\\b\\held");

  EXPECT_FALSE(Delete());

  EXPECT_THAT(ListTree(folder_), ElementsAre(L"b\\", L"b\\held"));
  lock.Release();
  EXPECT_TRUE(Delete());
}

TEST_F(FolderRemovalTest, ReportsAMissingFolderAndLeavesAFileAlone) {
  WriteFileBytes(folder_ + L"\\file", "x");

  EXPECT_FALSE(DeleteFolderTree(base_ + L"\\none", base_));
  EXPECT_FALSE(DeleteFolderTree(folder_ + L"\\file", base_));

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

TEST_F(FolderRemovalTest, TakesAnEmptyFolderThatCannotBeListedAndNoOther) {
  FakeListing listing;
  listing.Forbid(folder_, ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Delete());
  WriteFileBytes(folder_ + L"\\file", "x");
  EXPECT_FALSE(Delete());

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

TEST_F(FolderRemovalTest, LeavesTheContentOfAFolderThatCannotBeHeld) {
  WriteFileBytes(folder_ + L"\\file", "x");
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    return path == folder_ ? Answers(INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION)()
                           : open.Original()(path, rest...);
  });

  EXPECT_FALSE(Delete());

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

// Only an empty folder can be turned into a link where it is. As long as one file stays, no other
// has to be seen where it lies.
TEST_F(FolderRemovalTest, KeepsAFileInEachFolderUntilTheOthersAreGone) {
  WriteFiles(folder_, {L"\\a", L"\\b", L"\\c\\d", L"\\c\\e"});
  int looks = 0;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    const std::wstring text = path;
    const bool is_inner = text == folder_ + L"\\c\\e";
    if (is_inner || text == folder_ + L"\\b" || text == folder_ + L"\\c") {
      ++looks;
      EXPECT_FALSE(::DeleteFileW((folder_ + L"\\a").c_str()));
      EXPECT_FALSE(::MoveFileW((folder_ + L"\\a").c_str(), (root_ + L"\\a").c_str()));
      EXPECT_FALSE(is_inner && ::DeleteFileW((folder_ + L"\\c\\d").c_str()));
    }
    return open.Original()(path, rest...);
  });

  EXPECT_TRUE(Delete());

  EXPECT_EQ(looks, 4);  // the inner folder is opened to be held and to be deleted
  EXPECT_FALSE(Exists(folder_));
}

TEST_F(FolderRemovalTest, AsksForAsManyPlacesWhateverTheNumberOfFiles) {
  int asked[] = {0, 0};
  for (int& times : asked) {
    WriteFiles(folder_, {L"\\a"});
    if (&times != &asked[0]) {
      WriteFiles(folder_, {L"\\b", L"\\c", L"\\d"});
    }
    INTERPOSER(GetFinalPathNameByHandleW) final_path([&](auto... arguments) {
      ++times;
      return final_path.Original()(arguments...);
    });

    EXPECT_TRUE(Delete());
  }

  EXPECT_EQ(asked[0], 4);  // the base folder, the folder that is held, its first file, the folder
  EXPECT_EQ(asked[1], asked[0]);
}

TEST_F(FolderRemovalTest, KeepsTheFirstFolderUntilTheOthersAreGone) {
  WriteFiles(folder_, {L"\\a\\file", L"\\b\\file", L"\\c"});
  int looks = 0;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    const std::wstring text = path;
    if (text.starts_with(folder_ + L"\\b") || text == folder_ + L"\\c") {
      ++looks;
      EXPECT_THAT(ListTree(folder_ + L"\\a"), IsEmpty());
      EXPECT_FALSE(::RemoveDirectoryW((folder_ + L"\\a").c_str()));
      EXPECT_FALSE(::MoveFileW((folder_ + L"\\a").c_str(), (root_ + L"\\a").c_str()));
    }
    return open.Original()(path, rest...);
  });

  EXPECT_TRUE(Delete());

  EXPECT_EQ(looks, 4);  // the folder is opened to be held and to be deleted, the files once
  EXPECT_FALSE(Exists(folder_));
}

TEST_F(FolderRemovalTest, AsksForNoMorePlacesBecauseOfFoldersBesideTheFirst) {
  int asked[] = {0, 0};
  for (int& times : asked) {
    CreateFolders(folder_ + L"\\a");
    if (&times != &asked[0]) {
      WriteFiles(folder_, {L"\\b"});
      CreateFolders(folder_ + L"\\c");
      CreateFolders(folder_ + L"\\d");
    }
    INTERPOSER(GetFinalPathNameByHandleW) final_path([&](auto... arguments) {
      ++times;
      return final_path.Original()(arguments...);
    });

    EXPECT_TRUE(Delete());
  }

  EXPECT_EQ(asked[0], 5);  // the base folder; both folders, to be held and to be deleted
  EXPECT_EQ(asked[1], asked[0]);
}

TEST_F(FolderRemovalTest, TakesWhatIsBesideAFirstFolderThatStays) {
  WriteFiles(folder_, {L"\\a\\held", L"\\b\\file", L"\\c"});
  const HeldFile lock(folder_ + L"\\a\\held");

  EXPECT_FALSE(Delete());

  EXPECT_THAT(ListTree(folder_), ElementsAre(L"a\\", L"a\\held"));
}

// Whoever holds a file under one of its names holds it under all of them.
TEST_F(FolderRemovalTest, TakesAFileWithAllItsNames) {
  WriteFiles(folder_, {L"\\a", L"\\d\\file"});
  for (const wchar_t* name : {L"\\b", L"\\c", L"\\d\\e"}) {
    ASSERT_TRUE(::CreateHardLinkW((folder_ + name).c_str(), (folder_ + L"\\a").c_str(), nullptr));
  }

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(FolderRemovalTest, TakesAFileThatCannotBeKeptUntilTheEnd) {
  WriteFiles(folder_, {L"\\a", L"\\b"});
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing, auto... rest) {
    const bool is_kept = path == folder_ + L"\\a" && (sharing & FILE_SHARE_DELETE) == 0;
    return is_kept ? Answers(INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION)()
                   : open.Original()(path, access, sharing, rest...);
  });

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

class SeveralFoldersRemovalTest : public FolderRemovalTest {
 protected:
  SeveralFoldersRemovalTest() {
    WriteFiles(base_, {L"\\a\\file", L"\\b\\c\\file", L"\\d\\file"});
    WriteFiles(root_, {L"\\mine\\file", L"\\yours\\file"});
  }

  CFolderRemoval removal_{base_};
};

TEST_F(SeveralFoldersRemovalTest, TakesThemInAndOutsideOfTheProductsFolder) {
  for (const std::wstring& folder :
       {base_ + L"\\a", root_ + L"\\mine", base_ + L"\\b\\c", base_ + L"\\d", root_ + L"\\yours"}) {
    EXPECT_TRUE(removal_.Delete(folder)) << testing::PrintToString(folder);
    EXPECT_FALSE(Exists(folder)) << testing::PrintToString(folder);
  }
  EXPECT_FALSE(removal_.Delete(base_ + L"\\none"));
}

TEST_F(SeveralFoldersRemovalTest, LooksForTheProductsFolderOnce) {
  int looks = 0;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    looks += path == base_ + L"\\" ? 1 : 0;
    return looks == 1 && path == base_ + L"\\"
               ? Answers(INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION)()
               : open.Original()(path, rest...);
  });

  EXPECT_FALSE(removal_.Delete(base_ + L"\\a"));
  EXPECT_TRUE(removal_.Delete(base_ + L"\\a"));  // it couldn't be had, so it is asked for again
  EXPECT_TRUE(removal_.Delete(base_ + L"\\b\\c"));
  EXPECT_TRUE(removal_.Delete(base_ + L"\\d"));

  EXPECT_EQ(looks, 2);
}

TEST_F(FolderRemovalTest, HoldsNoMoreOfAWideFolderThanOfANarrowOne) {
  int most[] = {0, 0};
  for (int& open_handles : most) {
    WriteFiles(folder_, {L"\\a\\1", L"\\b\\1", L"\\b\\2"});
    if (&open_handles != &most[0]) {
      WriteFiles(folder_, {L"\\a\\2", L"\\b\\3", L"\\c\\1", L"\\d\\1", L"\\d\\2", L"\\e", L"\\f"});
    }
    INTERPOSER(CreateFileW) open(
        [&](auto...) { open_handles = std::max(open_handles, CountOpenHandles()); });

    EXPECT_TRUE(Delete());
  }

  EXPECT_EQ(most[0], most[1]);
}

TEST_F(FolderRemovalTest, LeavesNoHandlesBehind) {
  WriteFileBytes(folder_ + L"\\a\\b\\c", "x");
  const int handles_before = CountOpenHandles();

  EXPECT_TRUE(Delete());

  EXPECT_EQ(CountOpenHandles(), handles_before);
}

// As Windows names it to the program.
std::wstring FinalPathOf(const std::wstring& path) {
  const nhupdate::UniqueFile opened = nhupdate::LookAtItself(path);
  std::array<wchar_t, 1000> buffer = {};
  ::GetFinalPathNameByHandleW(opened.Get(), buffer.data(), static_cast<DWORD>(buffer.size()),
                              VOLUME_NAME_NT);
  return buffer.data();
}

// What a link leads to belongs to somebody else.
class LinkRemovalTest : public FolderRemovalTest {
 protected:
  LinkRemovalTest() {
    WriteFiles(elsewhere_, {L"\\important", L"\\inner\\ut.ini", L"\\plain"});
    ::SetFileAttributesW((elsewhere_ + L"\\important").c_str(), FILE_ATTRIBUTE_READONLY);
  }
  ~LinkRemovalTest() override {
    EXPECT_THAT(ListTree(elsewhere_),
                ElementsAre(L"important", L"inner\\", L"inner\\ut.ini", L"plain"));
    EXPECT_NE(::GetFileAttributesW((elsewhere_ + L"\\important").c_str()) & FILE_ATTRIBUTE_READONLY,
              0u);
  }
};

TEST_F(LinkRemovalTest, TakesALinkAndNothingBehindIt) {
  for (const wchar_t* name : {L"", L"\\inner\\link"}) {
    for (const DWORD tag : kLinkTags) {
      RemoveTree(folder_);
      const FakeLink link(folder_ + name, elsewhere_, tag);

      EXPECT_TRUE(Delete());

      EXPECT_FALSE(link.IsThere());
      EXPECT_FALSE(Exists(folder_));
    }
  }
}

TEST_F(LinkRemovalTest, TakesALinkOutsideOfTheProductAndNothingBehindIt) {
  const FakeLink link(root_ + L"\\mine", elsewhere_);

  EXPECT_TRUE(DeleteFolderTree(root_ + L"\\mine", base_));

  EXPECT_FALSE(link.IsThere());
}

TEST_F(LinkRemovalTest, TakesACloudPlaceholderLikeAnyFolderAndALinkToAFileAsAFile) {
  WriteFiles(folder_, {L"\\cloud\\inner\\file", L"\\file link"});
  FakeListing listing;
  listing.Disguise(folder_ + L"\\cloud", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_CLOUD);
  listing.Disguise(folder_ + L"\\file link", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK);

  EXPECT_TRUE(Delete());

  EXPECT_FALSE(Exists(folder_));
}

// Somebody put a link in the place of the folder above.
TEST_F(LinkRemovalTest, TakesNothingThroughALinkFurtherUpInTheProduct) {
  RemoveTree(folder_);
  const FakeLink link(folder_, elsewhere_);
  const FakeListing listing;

  EXPECT_FALSE(DeleteFolderTree(folder_ + L"\\inner", base_));

  EXPECT_THAT(listing.Patterns(), IsEmpty());
}

// Windows drops all dots at the end of a path, and one at the end of each name in it: "x.." is read
// as "x", and what is in it is looked for in "x.". Nobody holds that, and who put it there can have
// it lead to the folder that was listed, and elsewhere as soon as a file in that one is held.
TEST_F(LinkRemovalTest, TakesNothingByANameThatWindowsReadsOtherwise) {
  const std::wstring listed = folder_ + L"\\x..";
  const std::wstring exact = L"\\\\?\\" + folder_;
  WriteFiles(folder_, {L"\\a", L"\\x\\held"});
  for (const wchar_t* name : {L"\\x.", L"\\x.."}) {
    ASSERT_TRUE(::CreateDirectoryW((exact + name).c_str(), nullptr));
    WriteFiles(exact + name, {L"\\file", L"\\plain"});
  }
  {
    const HeldFile lock(folder_ + L"\\x\\held");
    FakeListing windows;
    windows.LeadElsewhere(listed + L"\\file", FinalPathOf(folder_) + L"\\x..\\file");
    const FakeLink link(
        listed, elsewhere_, [&](const std::wstring& path) { return path == listed + L"\\plain"; },
        true);

    EXPECT_FALSE(Delete());
  }

  EXPECT_THAT(ListTree(exact + L"\\x.."), ElementsAre(L"file", L"plain"));
  RemoveTree(exact);
}

// A user can have a folder of his tell letter cases apart. Then a link to "TOP" can stand in the
// place of "top", and lead elsewhere as soon as something in "TOP" is held.
TEST_F(LinkRemovalTest, TakesNothingThroughALinkToAFolderOfAlmostTheSameName) {
  for (const wchar_t* first : {L"\\file", L"\\folder\\inner"}) {
    RemoveTree(folder_);
    WriteFiles(folder_, {first, L"\\plain"});
    FakeListing windows;
    windows.LeadElsewhere(folder_, FinalPathOf(base_) + L"\\TOP");
    const FakeLink link(
        folder_, elsewhere_, [&](const std::wstring& path) { return path == folder_ + L"\\plain"; },
        true);

    EXPECT_FALSE(Delete());

    EXPECT_TRUE(link.IsThere());
  }
}

// Outside of the product's folder links further up are the user's own.
TEST_F(LinkRemovalTest, FollowsLinksFurtherUpOutsideOfTheProduct) {
  const FakeLink link(root_ + L"\\mine", elsewhere_);
  WriteFileBytes(elsewhere_ + L"\\sub\\file", "x");

  EXPECT_TRUE(DeleteFolderTree(root_ + L"\\mine\\sub", base_));

  EXPECT_FALSE(Exists(elsewhere_ + L"\\sub"));
}

// The call about this path at which somebody puts a link in the folder's place, just before Windows
// does what it was called for.
struct SwapMoment {
  const wchar_t* path;  // below the folder
  int call;             // the first about it, or the second
};

class SwappedFolderRemovalTest : public LinkRemovalTest,
                                 public testing::WithParamInterface<SwapMoment> {};

TEST_P(SwappedFolderRemovalTest, TakesNothingOfTheFolderThatALinkLeadsTo) {
  WriteFiles(folder_, {L"\\important", L"\\inner\\ut.ini"});
  ::SetFileAttributesW((folder_ + L"\\important").c_str(), FILE_ATTRIBUTE_READONLY);
  int calls = 0;
  const FakeLink link(folder_, elsewhere_, [&](const std::wstring& path) {
    return path == folder_ + GetParam().path && ++calls == GetParam().call;
  });

  std::ignore = Delete();

  EXPECT_GE(calls, GetParam().call);
}

INSTANTIATE_TEST_SUITE_P(AtEachMoment, SwappedFolderRemovalTest,
                         testing::Values(SwapMoment{L"", 1}, SwapMoment{L"/*.*", 1},
                                         SwapMoment{L"\\important", 1},
                                         SwapMoment{L"\\important", 2}, SwapMoment{L"\\inner", 1},
                                         SwapMoment{L"\\inner/*.*", 1},
                                         SwapMoment{L"\\inner\\ut.ini", 1},
                                         SwapMoment{L"\\inner", 2}, SwapMoment{L"", 2}));

// Windows lets the owner of an empty folder turn it into a link even while it is held. That happens
// here when the folder above is opened, or when the folder itself is listed.
TEST_F(LinkRemovalTest, TakesNothingOfTheFolderThatAnEmptyOneSuddenlyLeadsTo) {
  for (const std::wstring& moment : {base_ + L"\\", folder_ + L"/*.*"}) {
    RemoveTree(folder_);
    CreateFolders(folder_);
    const FakeLink link(
        folder_, elsewhere_, [&](const std::wstring& path) { return path == moment; }, true);

    EXPECT_TRUE(Delete());

    EXPECT_FALSE(Exists(folder_));
  }
}

// Somebody removes the only sub-folder when it is about to be held, or to be deleted, and turns the
// folder above into a link.
TEST_F(LinkRemovalTest, TakesNothingOfTheFolderThatOneSuddenlyLeadsToWithoutItsSubFolder) {
  for (const int call : {1, 2}) {
    RemoveTree(folder_);
    const std::wstring inner = folder_ + L"\\inner";
    CreateFolders(inner);
    int calls = 0;
    const FakeLink link(
        folder_, elsewhere_,
        [&](const std::wstring& path) {
          return path == inner && ++calls == call && ::RemoveDirectoryW(inner.c_str());
        },
        true);

    EXPECT_TRUE(Delete());

    EXPECT_GE(calls, call);
    EXPECT_FALSE(Exists(folder_));
  }
}

}  // namespace
}  // namespace nhupdate_test
