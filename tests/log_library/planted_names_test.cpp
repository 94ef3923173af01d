// Every user may put things into the log folder, for an elevated writer to stumble over when it
// starts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

// The records go to the next rotated name, and the first one says so.
void ExpectLogInPlaceOfTheCurrentFile(const LogPlace& place) {
  LoadedLogLibrary library;
  const Interposer<decltype(::Sleep)> sleep(library.Module(), "Sleep", [](DWORD) {});
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"record");

  EXPECT_EQ(sleep.Calls(), 0);  // such things don't go away by themselves
  const auto records = ReadRecords(place.RotatedFile(1));
  ASSERT_EQ(records.size(), 2u);
  EXPECT_THAT(records[0].text, StartsWith("Log library "));
  EXPECT_THAT(records[0].text, EndsWith(", in place of NHUpdateManager.log, which is a link, a "
                                        "folder or a file of several names"));
  EXPECT_EQ(records[1].text, "record");
}

TEST(PlantedNamesTest, AFileOfSeveralNamesIsNotWrittenTo) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"victim"), "precious");
  ASSERT_TRUE(
      ::CreateHardLinkW(place.CurrentFile().c_str(), place.Outside(L"victim").c_str(), nullptr));

  ExpectLogInPlaceOfTheCurrentFile(place);

  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

// Wine follows the link when it opens the file; there it is the resolved path that tells.
TEST(PlantedNamesTest, ALinkToAFileIsNotWrittenThrough) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"victim"), "precious");
  CreateLink(place.CurrentFile(), place.Outside(L"victim"));

  ExpectLogInPlaceOfTheCurrentFile(place);

  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

TEST(PlantedNamesTest, AFolderUnderTheFilesNameIsLeftAlone) {
  const LogPlace place;
  CreateFolders(place.CurrentFile());

  ExpectLogInPlaceOfTheCurrentFile(place);

  EXPECT_THAT(ListTree(place.CurrentFile()), IsEmpty());
}

// What Windows tells of a file or folder when it is a link; Wine has no such.
struct ReparsePointCase {
  const char* name;
  DWORD kind;  // of what is made a link: FILE_ATTRIBUTE_DIRECTORY or 0 for the file
  int result;
};

TEST(PlantedNamesTest, ReparsePointsAreNotUsed) {
  const ReparsePointCase cases[] = {
      {"the folder", FILE_ATTRIBUTE_DIRECTORY, 3},
      {"the file", 0, 0},
  };
  for (const ReparsePointCase& test : cases) {
    const LogPlace place;
    LoadedLogLibrary library;
    int result = 0;
    {
      Interposer<decltype(::GetFileInformationByHandle)> inspect(
          library.Module(), "GetFileInformationByHandle",
          [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
            const BOOL done = inspect.Original()(file, information);
            if ((information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == test.kind) {
              information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            }
            return done;
          });
      result = library.Start(place.Settings(), place.Folder());
    }

    EXPECT_EQ(result, test.result) << test.name;
    EXPECT_TRUE(!nhupdate::Exists(place.CurrentFile()) ||
                ReadFileBytes(place.CurrentFile()).empty())
        << test.name;
  }
}

TEST(PlantedNamesTest, LinksAreOpenedThemselvesAndNotFollowed) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  int opened = 0;
  {
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          ++opened;
          // Above the folders that users may write to there may be links.
          const bool is_users = std::wstring_view(path).starts_with(place.Folder());
          EXPECT_EQ((flags & FILE_FLAG_OPEN_REPARSE_POINT) != 0, is_users)
              << testing::PrintToString(path);
          EXPECT_TRUE(disposition == OPEN_EXISTING || disposition == OPEN_ALWAYS);
          return create.Original()(path, access, sharing, security, disposition, flags, model);
        });
    EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
    library.Write(kFullFile);
    library.Write(L"next");
  }

  EXPECT_GE(opened, 4);
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(PlantedNamesTest, AFolderExchangedForALinkOnTheWayIsRefused) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 0;
  {
    // The file turns out to lie elsewhere than in the folder that was looked at.
    Interposer<decltype(::GetFinalPathNameByHandleW)> resolve(
        library.Module(), "GetFinalPathNameByHandleW",
        [&](HANDLE file, wchar_t* path, DWORD size, DWORD flags) {
          const DWORD units = resolve.Original()(file, path, size, flags);
          if (size > units && std::wstring_view(path, units).ends_with(L".log")) {
            path[1] = L'?';
          }
          return units;
        });
    result = library.Start(place.Settings(), place.Folder());
  }

  EXPECT_EQ(result, 4);
}

}  // namespace
}  // namespace nhupdate_test
