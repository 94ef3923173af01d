#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;

TEST(LogStartTest, FailsWithACodeOfItsOwnForEachUnusableFolder) {
  TestLog log;
  const std::wstring missing = log.Outside(L"missing");
  const std::wstring file = log.Outside(L"file");
  const std::wstring wrong = log.Outside(L"a?b");
  WriteFileBytes(file, "x");
  const struct {
    const char* name;
    const wchar_t* folder;
    int result;
  } cases[] = {
      {"null", nullptr, 1},
      {"empty", L"", 1},
      {"missing", missing.c_str(), 2},
      {"a file", file.c_str(), 2},
      {"no possible name", wrong.c_str(), 2},
      {"a device", L"\\\\.\\NUL", 2},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(log.Start(log.Settings().c_str(), test.folder), test.result) << test.name;
    log.Write(L"ignored");
    log.Flush();
    log.Stop();
  }

  EXPECT_THAT(log.Files(), IsEmpty());
  EXPECT_FALSE(Exists(missing));
}

TEST(LogStartTest, FailsWhenNoFileCanBeWritten) {
  TestLog log;
  const INTERPOSER(Sleep) sleep(log.Module(), [](DWORD) {});
  const INTERPOSER(CreateFileW) create(
      log.Module(),
      AnswersIf([](std::wstring_view path, auto...) { return path.ends_with(L".log"); },
                INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  EXPECT_EQ(log.Start(), 4);
  log.Write(L"ignored");

  EXPECT_THAT(log.Files(), IsEmpty());
}

TEST(LogStartTest, GoesOnInPlaceOfAFileThatCantBeOpened) {
  TestLog log;
  const INTERPOSER(Sleep) sleep(log.Module(), [](DWORD) {});
  const INTERPOSER(CreateFileW) create(
      log.Module(), AnswersFor(log.CurrentFile(), INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(ReadRecords(log.RotatedFile(1)).at(0).text,
              EndsWith(", in place of NHUpdateManager.log, which can't be opened"));
}

TEST(LogStartTest, AFailedStartEndsTheLogBefore) {
  StartedLog log;
  log.Write(L"before");

  EXPECT_EQ(log.Start(log.Settings(), L""), 1);
  log.Write(L"after");

  EXPECT_THAT(log.Texts(), ElementsAre("before"));
}

TEST(LogStartTest, StartingAgainGoesOnInTheNewFolder) {
  StartedLog log;
  const LogPlace second;
  log.Write(L"one");

  EXPECT_EQ(log.Start(second.Settings(), second.Folder()), 0);
  log.Write(L"two");
  log.Stop();

  EXPECT_THAT(log.Texts(), ElementsAre("one"));
  EXPECT_THAT(second.Texts(), ElementsAre("two"));
}

TEST(LogStartTest, GoesOnInTheFileOfAnEarlierRunWhateverTheSpelling) {
  const struct {
    const wchar_t* behind_the_folder;
    const wchar_t* file;
  } cases[] = {
      {L"", L"\\NHUpdateManager.log"},
      {L"\\", L"\\NHUpdateManager.log"},
      {L"", L"\\nhupdatemanager.LOG"},
  };
  for (const auto& test : cases) {
    TestLog log;
    WriteFileBytes(log.Folder() + test.file, kEarlier);

    EXPECT_EQ(log.Start(log.Settings(), log.Folder() + test.behind_the_folder), 0);
    log.Write(L"now");

    EXPECT_THAT(ReadTexts(log.Folder() + test.file), ElementsAre("earlier", "now"));
    EXPECT_THAT(log.Files(), SizeIs(1));
  }
}

}  // namespace
}  // namespace nhupdate_test
