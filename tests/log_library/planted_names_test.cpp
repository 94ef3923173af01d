// Every user may put things into the log folder, for an elevated writer to stumble over when it
// starts.

#include "tests/log_library/test_log.h"
#include "tests/support/folder_link.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class PlantedNamesTest : public testing::Test {
 protected:
  PlantedNamesTest() { WriteFileBytes(victim_, "precious"); }

  // The records go to the next rotated name, and the first one says so.
  void ExpectLogInPlaceOfTheCurrentFile() {
    const INTERPOSER(Sleep) sleep(log_.Module(), [](DWORD) {});

    EXPECT_EQ(log_.Start(), 0);
    log_.Write(L"record");

    EXPECT_EQ(sleep.Calls(), 0);  // such things don't go away by themselves
    const auto records = ReadRecords(log_.RotatedFile(1));
    ASSERT_EQ(records.size(), 2u);
    EXPECT_THAT(records[0].text, StartsWith("Log library "));
    EXPECT_THAT(records[0].text, EndsWith(", in place of NHUpdateManager.log, which is a link, a "
                                          "folder or a file of several names"));
    EXPECT_EQ(records[1].text, "record");
    EXPECT_EQ(ReadFileBytes(victim_), "precious");
  }

  TestLog log_{kSmallFiles};
  const std::wstring victim_ = log_.Outside(L"victim");
};

TEST_F(PlantedNamesTest, AFileOfSeveralNamesIsNotWrittenTo) {
  ASSERT_TRUE(::CreateHardLinkW(log_.CurrentFile().c_str(), victim_.c_str(), nullptr));

  ExpectLogInPlaceOfTheCurrentFile();
}

// Wine follows the link when it opens the file, so only the resolved path gives the link away.
TEST_F(PlantedNamesTest, ALinkToAFileIsNotWrittenThrough) {
  CreateLink(log_.CurrentFile(), victim_);

  ExpectLogInPlaceOfTheCurrentFile();
}

TEST_F(PlantedNamesTest, AFolderUnderTheFilesNameIsLeftAlone) {
  CreateFolders(log_.CurrentFile());

  ExpectLogInPlaceOfTheCurrentFile();

  EXPECT_THAT(ListTree(log_.CurrentFile()), IsEmpty());
}

// Windows tells of a link by this attribute, which has to be faked since Wine never gives it.
TEST_F(PlantedNamesTest, ReparsePointsAreNotUsed) {
  const struct {
    const char* name;
    DWORD kind;  // of what is made a link: FILE_ATTRIBUTE_DIRECTORY or 0 for the file
    int result;
  } cases[] = {
      {"the folder", FILE_ATTRIBUTE_DIRECTORY, 3},
      {"the file", 0, 0},
  };
  for (const auto& test : cases) {
    INTERPOSER(GetFileInformationByHandle) inspect(
        log_.Module(), [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
          const BOOL done = inspect.Original()(file, information);
          if ((information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == test.kind) {
            information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
          }
          return done;
        });

    EXPECT_EQ(log_.Start(), test.result) << test.name;
    EXPECT_TRUE(!Exists(log_.CurrentFile()) || ReadFileBytes(log_.CurrentFile()).empty())
        << test.name;
  }
}

TEST_F(PlantedNamesTest, LinksAreOpenedThemselvesAndNotFollowed) {
  const INTERPOSER(CreateFileW) create(
      log_.Module(), [&](const wchar_t* path, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD disposition,
                         DWORD flags, auto...) {
        // Above the folders that users may write to there may be links.
        const bool is_users = std::wstring_view(path).starts_with(log_.Folder());
        EXPECT_EQ((flags & FILE_FLAG_OPEN_REPARSE_POINT) != 0, is_users) << PrintToString(path);
        EXPECT_TRUE(disposition == OPEN_EXISTING || disposition == OPEN_ALWAYS);
      });

  EXPECT_EQ(log_.Start(), 0);
  log_.Write(kFullFile);
  log_.Write(L"next");

  EXPECT_GE(create.Calls(), 4);
  EXPECT_TRUE(Exists(log_.RotatedFile(1)));
}

// The file turns out to lie elsewhere than in the folder that was looked at.
TEST_F(PlantedNamesTest, AFolderExchangedForALinkOnTheWayIsRefused) {
  INTERPOSER(GetFinalPathNameByHandleW) resolve(
      log_.Module(), [&](HANDLE file, wchar_t* path, DWORD size, DWORD flags) {
        const DWORD units = resolve.Original()(file, path, size, flags);
        if (size > units && std::wstring_view(path, units).ends_with(L".log")) {
          path[1] = L'?';
        }
        return units;
      });

  EXPECT_EQ(log_.Start(), 4);
}

}  // namespace
}  // namespace nhupdate_test
