#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/log_journal.h"

namespace nhupdate_test {
namespace {

class LogLibraryEndToEndTest : public EndToEndTest {
 protected:
  LogLibraryEndToEndTest() { hub_.UseLogLibrary(L"recording_log"); }

  // A run that ends with 12, whatever is wrong with the log.
  [[nodiscard]] ProgramRun RunDownload(Streams streams = Streams::kPiped) {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
    return RunAs({.executable = hub_.Manager(), .arguments = L"-download", .streams = streams});
  }
};

TEST_F(LogLibraryEndToEndTest, IsStartedWithTheVersionItsConfigurationAndTheLogFolder) {
  const ProgramRun run = RunDownload();

  const std::vector<LogCall> calls = ReadLogJournal(hub_.LogJournal());
  ASSERT_GT(calls.size(), 3U);
  EXPECT_EQ(calls.front().entry, L"Start");
  EXPECT_EQ(
      calls.front().arguments,
      (std::vector<std::wstring>{L"1.0.0", hub_.Module() + L"\\LogConfig.ini",
                                 hub_.DataFolder() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log"}));
  EXPECT_EQ(calls[1].arguments[1], L"NHUpdateManager");
  EXPECT_EQ(calls[calls.size() - 3].entry, L"WriteLog");
  EXPECT_EQ(calls[calls.size() - 2].entry, L"Stop");
  EXPECT_EQ(calls[calls.size() - 1].entry, L"Stop");
  EXPECT_EQ(run.output, "");
}

TEST_F(LogLibraryEndToEndTest, CostsOneLineOnTheConsoleWhenItIsMissing) {
  hub_.UseLogLibrary(L"");

  ExpectGoldenRun(12, RunDownload());
}

TEST_F(LogLibraryEndToEndTest, CostsOneLineOnTheConsoleWhenAnEntryIsMissing) {
  const struct {
    const wchar_t* library;
    const char* output;
    std::size_t calls;  // of "Stop", if that was found before the missing one
  } cases[] = {
      {L"recording_log_without_start", "Fail to load Start from library\n", 0},
      {L"recording_log_without_stop", "Fail to load Stop from library\n", 0},
      {L"recording_log_without_flush", "Fail to load Flush from library\n", 1},
      {L"recording_log_without_write_log", "Fail to load WriteLog from library\n", 1},
  };
  for (const auto& [library, output, call_count] : cases) {
    SCOPED_TRACE(output);
    hub_.UseLogLibrary(library);
    ::DeleteFileW(hub_.LogJournal().c_str());

    const ProgramRun run = RunDownload();

    EXPECT_EQ(run.exit_code, 12U);
    EXPECT_EQ(run.output, output);
    const std::vector<LogCall> calls = ReadLogJournal(hub_.LogJournal());
    ASSERT_EQ(calls.size(), call_count);
    for (const LogCall& call : calls) {
      EXPECT_EQ(call.entry, L"Stop");
    }
  }
}

TEST_F(LogLibraryEndToEndTest, StillGetsTheRecordsWhenItRefusesToStart) {
  hub_.UseLogLibrary(L"recording_log_start_fails");

  ExpectGoldenRun(12, RunDownload());
}

TEST_F(LogLibraryEndToEndTest, MayBeMissingWithoutAConsoleOrAnyStream) {
  hub_.UseLogLibrary(L"");

  for (const Streams streams : {Streams::kNone, Streams::kClosed}) {
    const ProgramRun run = RunDownload(streams);

    EXPECT_EQ(run.exit_code, 12U);
    EXPECT_EQ(run.output, "");
  }
}

}  // namespace
}  // namespace nhupdate_test
