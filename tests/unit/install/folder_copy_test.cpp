// What is copied, what it replaces and what is said about it when nothing is in the way.

#include "tests/unit/install/folder_copy_test.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <ostream>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::CFolderCopy;
using nhupdate::CopyOptions;
using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

// Paths of files and, with a backslash at their end, folders.
struct CopyCase {
  const char* situation;
  Lines source;
  Lines target;
  CopyOptions options;
  Lines records;
  Lines result;
};

void PrintTo(const CopyCase& example, std::ostream* stream) {
  *stream << example.situation;
}

const CopyCase kCopies[] = {
    {"each step is logged, in order",
     {L"a.txt", L"b\\c.txt", L"b\\d\\e.txt", L"f.txt"},
     {},
     kReplacing,
     {FolderLine(), FileLine(L"\\a.txt"), DeletionLine(L"\\b"), FolderLine(L"\\b"),
      FileLine(L"\\b\\c.txt"), FolderLine(L"\\b\\d"), FileLine(L"\\b\\d\\e.txt"),
      FileLine(L"\\f.txt")},
     {L"a.txt", L"b\\", L"b\\c.txt", L"b\\d\\", L"b\\d\\e.txt", L"f.txt"}},
    {"files are replaced, others kept",
     {L"a.txt"},
     {L"a.txt", L"own.txt"},
     kReplacing,
     {FolderLine(), FileLine(L"\\a.txt")},
     {L"a.txt", L"own.txt"}},
    {"folders are passed over without recursion",
     {L"a.txt", L"b\\c.txt"},
     {L"b\\old.txt"},
     {.recurse = false, .delete_existing_sub_folders = true},
     {FolderLine(), FileLine(L"\\a.txt")},
     {L"a.txt", L"b\\", L"b\\old.txt"}},
    {"nothing is logged without details",
     {L"a.txt", L"b\\c.txt"},
     {L"b\\old.txt"},
     {.log_details = false, .delete_existing_sub_folders = true},
     {},
     {L"a.txt", L"b\\", L"b\\c.txt"}},
    {"empty folders are copied",
     {L"empty\\inner\\"},
     {},
     {},
     {FolderLine(), FolderLine(L"\\empty"), FolderLine(L"\\empty\\inner")},
     {L"empty\\", L"empty\\inner\\"}},
    {"a folder that both have is replaced, one of the destination kept",
     {L"b\\new.txt"},
     {L"b\\old.txt", L"b\\inner\\old.txt", L"own\\own.txt"},
     kReplacing,
     {FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"), FileLine(L"\\b\\new.txt")},
     {L"b\\", L"b\\new.txt", L"own\\", L"own\\own.txt"}},
    {"no folder is replaced unless that is asked for",
     {L"b\\new.txt"},
     {L"b\\old.txt"},
     {},
     {FolderLine(), FolderLine(L"\\b"), FileLine(L"\\b\\new.txt")},
     {L"b\\", L"b\\new.txt", L"b\\old.txt"}},
    {"a percent sign stays one",
     {L"%s%n%d.txt", L"50% %s\\"},
     {},
     kReplacing,
     {FolderLine(), FileLine(L"\\%s%n%d.txt"), DeletionLine(L"\\50% %s"), FolderLine(L"\\50% %s")},
     {L"%s%n%d.txt", L"50% %s\\"}},
};

class SmoothFolderCopyTest : public FolderCopyTest, public testing::WithParamInterface<CopyCase> {
 protected:
  static void Make(const std::wstring& folder, const Lines& paths, const std::string& bytes) {
    for (const std::wstring& path : paths) {
      if (path.ends_with(L'\\')) {
        CreateFolders(folder + L"\\" + path.substr(0, path.size() - 1));
      } else {
        WriteFileBytes(folder + L"\\" + path, bytes);
      }
    }
  }
};

TEST_P(SmoothFolderCopyTest, DoesAndSaysWhatItShould) {
  Make(source_, GetParam().source, "new");
  Make(target_, GetParam().target, "old and longer");

  EXPECT_TRUE(Copy(GetParam().options));

  EXPECT_EQ(log_.Records(), GetParam().records);
  EXPECT_EQ(ListTree(target_), GetParam().result);
  for (const std::wstring& path : GetParam().result) {
    if (!path.ends_with(L'\\')) {
      EXPECT_EQ(ReadFileBytes(target_ + L"\\" + path),
                Exists(source_ + L"\\" + path) ? "new" : "old and longer");
    }
  }
  EXPECT_EQ(failed_path_, L"nothing yet");
}

INSTANTIATE_TEST_SUITE_P(InEachSituation, SmoothFolderCopyTest, testing::ValuesIn(kCopies));

// It is looked for, made and held; there is nothing to be deleted.
TEST_F(FolderCopyTest, OpensAFolderThatIsNewOnlyTwice) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  Lines opened;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    opened.push_back(path);
    return open.Original()(path, rest...);
  });

  EXPECT_TRUE(Copy(kReplacing));

  EXPECT_THAT(opened,
              ElementsAre(target_ + L"\\", target_ + L"\\b", target_ + L"\\b", source_ + L"\\b"));
}

TEST_F(FolderCopyTest, TakesNamesOfAllKinds) {
  const std::wstring kNames[] = {L"two  blanks .txt",
                                 L"gr\u00FC\u00DFe.txt",
                                 L"\u65E5\u672C\u8A9E.txt",
                                 L"no extension",
                                 L".hidden",
                                 L"...three",
                                 L"a;b,c=d'e&f^(g).txt",
                                 L"\U0001F600.txt",
                                 std::wstring(248, L'n')};
  for (const std::wstring& name : kNames) {
    WriteFileBytes(source_ + L"\\" + name, "file");
    WriteFileBytes(source_ + L"\\folder " + name + L"\\" + name, "");
  }

  EXPECT_TRUE(Copy());

  EXPECT_EQ(ListTree(target_), ListTree(source_));
  EXPECT_EQ(ListTree(target_).size(), 3 * std::size(kNames));
}

TEST_F(FolderCopyTest, TakesHiddenAndReadOnlyFilesWithTheirAttributes) {
  for (const DWORD attribute :
       std::initializer_list<DWORD>{FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_READONLY}) {
    const std::wstring name = L"\\" + std::to_wstring(attribute);
    WriteFileBytes(source_ + name, "x");
    ::SetFileAttributesW((source_ + name).c_str(), attribute);

    EXPECT_TRUE(Copy({.recurse = false}));

    const DWORD copied = ::GetFileAttributesW((target_ + name).c_str());
    EXPECT_EQ(copied & ~DWORD{FILE_ATTRIBUTE_ARCHIVE}, attribute);
    ::SetFileAttributesW((target_ + name).c_str(), FILE_ATTRIBUTE_NORMAL);
  }
}

TEST_F(FolderCopyTest, PassesOverTheRunningProgramsFolderWhateverIsInIt) {
  WriteFileBytes(app_ + L"\\NHUpdateManager\\new.txt", "N");
  WriteFileBytes(folders_.module_folder + L"\\old.txt", "O");

  EXPECT_TRUE(copy_.Copy(base_, app_, kReplacing));

  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}"));
  EXPECT_THAT(ListTree(folders_.module_folder), ElementsAre(L"old.txt"));
}

TEST_F(FolderCopyTest, PassesOverTheRunningProgramsFolderAtAnyDepth) {
  folders_.module_folder = target_ + L"\\Tools\\NHUpdateManager";
  WriteFileBytes(source_ + L"\\Tools\\NHUpdateManager\\new.txt", "N");
  WriteFileBytes(source_ + L"\\Tools\\b.txt", "B");

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"Tools\\", L"Tools\\b.txt"));
}

// The two names are told apart although Windows takes them for one folder.
TEST_F(FolderCopyTest, KnowsTheRunningProgramsFolderOnlyInItsOwnLetterCase) {
  WriteFileBytes(app_ + L"\\nhupdatemanager\\new.txt", "N");
  WriteFileBytes(folders_.module_folder + L"\\old.txt", "O");

  EXPECT_TRUE(copy_.Copy(base_, app_, kReplacing));

  EXPECT_THAT(ListTree(folders_.module_folder), ElementsAre(L"new.txt"));
}

TEST_F(FolderCopyTest, NeitherLooksAtNorTouchesTheDiskWithoutABaseFolder) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  WriteFileBytes(target_ + L"\\b\\old.txt", "O");
  for (const nhupdate::ProductFolders& folders : FoldersWithoutBase()) {
    log_.ForgetRecords();
    const FakeListing listing;
    CFolderCopy copy(folders, log_.Log(), failed_path_);

    EXPECT_TRUE(copy.Copy(target_, source_, kReplacing));
    EXPECT_TRUE(copy.CopyWithRetries(root_ + L"\\fresh", source_, kReplacing));

    EXPECT_THAT(log_.Records(),
                ElementsAre(FolderLine(), L"2|Copy folder from {root}\\from to {root}\\fresh",
                            L"2|Copy complete."));
    EXPECT_THAT(listing.Patterns(), IsEmpty());
    EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"b\\old.txt"));
    EXPECT_FALSE(Exists(root_ + L"\\fresh"));
  }
}

}  // namespace
}  // namespace nhupdate_test
