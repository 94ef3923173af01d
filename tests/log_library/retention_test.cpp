// Which rotated files are deleted, and when.

#include "tests/log_library/aged_file.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

TEST(LogRetentionTest, KeepsTheYoungestFilesUpToTheCount) {
  StartedLog log("MaxFileSizeKB=16\nMaxFiles=3\n");

  for (int file = 0; file < 6; ++file) {
    log.Write(kFullFile);
  }

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.4.log", L"NHUpdateManager.5.log",
                                       L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, KeepsTheCurrentFileAloneWhenThatIsTheCount) {
  StartedLog log("MaxFileSizeKB=16\nMaxFiles=1\n");

  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, DeletesAtStartWhatIsTooOldOrTooMuch) {
  const struct {
    const char* settings;
    std::vector<int> ages_hours;  // of the files 1, 2, ...
    std::vector<int> kept;
  } cases[] = {
      {"MaxFiles=4\nMaxAgeDays=2\n", {49, 47, 4, 3, 2}, {3, 4, 5}},
      {"MaxFiles=4\nMaxAgeDays=2\n", {2, 3, 4, 47, 49}, {1, 2, 3}},
      {"MaxFiles=10\nMaxAgeDays=2\n", {49, 47}, {2}},
      {"MaxFiles=10\nMaxAgeDays=1\n", {-48}, {1}},  // from the future
  };
  for (const auto& test : cases) {
    TestLog log(test.settings);
    for (std::size_t index = 0; index < test.ages_hours.size(); ++index) {
      const std::wstring file = log.RotatedFile(static_cast<int>(index) + 1);
      WriteFileBytes(file, "x");
      SetLastWritten(file, HoursAgo(test.ages_hours[index]));
    }

    EXPECT_EQ(log.Start(), 0);

    std::vector<std::wstring> kept;
    for (const int number : test.kept) {
      kept.push_back(L"NHUpdateManager." + std::to_wstring(number) + L".log");
    }
    kept.push_back(L"NHUpdateManager.log");
    EXPECT_EQ(log.Files(), kept) << test.settings;
  }
}

TEST(LogRetentionTest, DeletesWhatIsOlderThanTheAgeAndNotWhatIsJustSoOld) {
  TestLog log("MaxFiles=10\nMaxAgeDays=1\n");
  const FILETIME now = HoursAgo(0);
  FILETIME a_day_before = HoursBefore(now, 24);
  WriteFileBytes(log.RotatedFile(1), "x");
  WriteFileBytes(log.RotatedFile(2), "x");
  SetLastWritten(log.RotatedFile(1), a_day_before);
  --a_day_before.dwLowDateTime;
  SetLastWritten(log.RotatedFile(2), a_day_before);
  INTERPOSER(GetSystemTimeAsFileTime) clock(log.Module(), [&](FILETIME* time) { *time = now; });

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, CountsNoFolderThatIsYoungerThanTheFiles) {
  TestLog log("MaxFiles=2\n");
  WriteFileBytes(log.RotatedFile(1), "x");
  SetLastWritten(log.RotatedFile(1), HoursAgo(1));
  CreateFolders(log.RotatedFile(2));
  CreateFolders(log.RotatedFile(3));

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.2.log\\",
                                       L"NHUpdateManager.3.log\\", L"NHUpdateManager.log"));
}

// 64 files are deleted at a time.
TEST(LogRetentionTest, DeletesTheOldestFirst) {
  constexpr int kFiles = 66;
  TestLog log("MaxFiles=1\n");
  for (int number = 1; number <= kFiles; ++number) {
    WriteFileBytes(log.RotatedFile(number), "x");
    SetLastWritten(log.RotatedFile(number), HoursAgo(number));
  }

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.2.log",
                                       L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, DeletesAtStartAlsoWhileAnotherProcessHasTheTurn) {
  TestLog log("MaxFiles=1\n");
  WriteFileBytes(log.RotatedFile(1), "x");
  const INTERPOSER(WaitForSingleObject) no_turn(log.Module(), Answers(DWORD{WAIT_TIMEOUT}));

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, LeavesForeignFilesAlone) {
  TestLog log("MaxFiles=1\n");
  for (const wchar_t* name : {L"NHUpdateManager.1.log.bak", L"NHUpdateManager.x.log",
                              L"NHUpdateManager.exe.1234.dmp", L"Other.1.log"}) {
    WriteFileBytes(log.Folder() + L"\\" + name, "x");
  }

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), UnorderedElementsAre(
                               L"NHUpdateManager.1.log.bak", L"NHUpdateManager.exe.1234.dmp",
                               L"NHUpdateManager.log", L"NHUpdateManager.x.log", L"Other.1.log"));
}

// Its records would be lost.
TEST(LogRetentionTest, DeletesAFileOnlyWhenNoWriterHasItOpenAnyMore) {
  constexpr DWORD kEverything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  TestLog log("MaxFiles=1\n");
  WriteFileBytes(log.RotatedFile(7), "x");
  {
    const HeldFile writer(log.RotatedFile(7), kEverything, FILE_APPEND_DATA);
    EXPECT_EQ(log.Start(), 0);
  }
  EXPECT_THAT(log.Files(), Contains(L"NHUpdateManager.7.log"));
  {
    const HeldFile reader(log.RotatedFile(7), kEverything);
    EXPECT_EQ(log.Start(), 0);
  }

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, DeletesAFileThatMayNotBeRead) {
  TestLog log("MaxFiles=1\n");
  const std::wstring file = log.RotatedFile(7);
  WriteFileBytes(file, "x");
  const INTERPOSER(CreateFileW) open(
      log.Module(),
      AnswersIf([&](const wchar_t* path, DWORD access,
                    auto...) { return path == file && (access & FILE_READ_DATA) != 0; },
                INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, AFileThatCantBeDeletedStaysAndIsInNobodysWay) {
  TestLog log("MaxFileSizeKB=16\nMaxFiles=1\n");
  WriteFileBytes(log.RotatedFile(7), "held");
  const HeldFile holder(log.RotatedFile(7), FILE_SHARE_READ);

  EXPECT_EQ(log.Start(), 0);
  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_THAT(log.Files(), Contains(L"NHUpdateManager.7.log"));
  EXPECT_THAT(log.Texts(), ElementsAre("next"));
}

}  // namespace
}  // namespace nhupdate_test
