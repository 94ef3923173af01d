#include "tests/support/log_journal.h"

#include <gtest/gtest-spi.h>

#include "tests/support/windows_basics.h"

#include <iterator>

namespace nhupdate_test {
namespace {

class LogJournalTest : public testing::Test {
 protected:
  void Write(const std::string& journal) { WriteFileBytes(path_, journal); }

  ScratchFolder scratch_;
  std::wstring path_ = scratch_.Path() + L"\\journal.txt";
};

TEST_F(LogJournalTest, TellsTheCallsInOrderWithTheirProcesses) {
  EXPECT_THAT(ReadLogJournal(path_), IsEmpty());
  Write("7\tStart\t1.0.0\t\tC:\\\xC3\xBC\n12\tFlush\n7\tWriteLog\t2\ttag\t\n7\tStop\n");

  const std::vector<LogCall> calls = ReadLogJournal(path_);

  const LogCall expected[] = {{7, L"Start", {L"1.0.0", L"", L"C:\\\u00FC"}},
                              {12, L"Flush", {}},
                              {7, L"WriteLog", {L"2", L"tag", L""}},
                              {7, L"Stop", {}}};
  EXPECT_TRUE(std::equal(calls.begin(), calls.end(), std::begin(expected), std::end(expected)));
}

TEST_F(LogJournalTest, FailsTheTestAtALineWithTooFewOrTooManyArguments) {
  for (const char* line : {"\n", "7\n", "7\tWriteLog\t2\ttag\n", "7\tWriteLog\t2\ttag\ta\tb\n",
                           "7\tStart\t1.0.0\tC:\\c.ini\n", "7\tStop\t\n"}) {
    Write(line);
    std::vector<LogCall> calls;

    EXPECT_NONFATAL_FAILURE(calls = ReadLogJournal(path_), "Not a line");

    EXPECT_THAT(calls, IsEmpty()) << line;
  }
}

TEST_F(LogJournalTest, GivesTheRecordsWithTheirLevels) {
  Write("7\tStart\t1.0.0\tc\tf\n7\tWriteLog\t2\ttag\ttext\n7\tWriteLog\t-1\ttag\t\n7\tStop\n");

  EXPECT_THAT(RecordsOf(ReadLogJournal(path_)), ElementsAre(L"2|text", L"-1|"));
}

// Each library opens the journal for itself, as those of several processes do.
TEST_F(LogJournalTest, HasTheLinesOfSeveralLibrariesInOrderWhileTheyAreLoaded) {
  ::SetEnvironmentVariableW(kLogJournalVariable, path_.c_str());
  const auto load = [](const wchar_t* name) {
    return UniqueLibrary(::LoadLibraryW((TestProgramFolder() + name).c_str()));
  };
  const UniqueLibrary first = load(L"\\recording_log.dll");
  const UniqueLibrary second = load(L"\\recording_log_without_stop.dll");
  const auto call = [](const UniqueLibrary& library, const char* entry) {
    reinterpret_cast<void (*)()>(::GetProcAddress(library.Get(), entry))();
  };

  call(first, "Stop");
  call(second, "Flush");
  call(first, "Stop");

  const DWORD own = ::GetCurrentProcessId();
  const std::vector<LogCall> calls = ReadLogJournal(path_);
  EXPECT_EQ(calls,
            std::vector<LogCall>({{own, L"Stop", {}}, {own, L"Flush", {}}, {own, L"Stop", {}}}));
  EXPECT_TRUE(::DeleteFileW(path_.c_str()));
  ::SetEnvironmentVariableW(kLogJournalVariable, nullptr);
}

}  // namespace
}  // namespace nhupdate_test
