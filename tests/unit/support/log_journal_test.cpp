#include "tests/support/log_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LogJournalTest : public testing::Test {
 protected:
  void Write(const std::string& journal) { WriteFileBytes(path_, journal); }

  ScratchFolder scratch_;
  std::wstring path_ = scratch_.Path() + L"\\journal.txt";
};

TEST_F(LogJournalTest, IsEmptyBeforeTheFirstCall) {
  EXPECT_THAT(ReadLogJournal(path_), IsEmpty());
}

TEST_F(LogJournalTest, TellsTheCallsInOrderWithTheirProcesses) {
  Write("7\tStart\t1.0.0\tC:\\c.ini\tC:\\\xC3\xBC\n12\tFlush\n7\tStop\n");

  const std::vector<LogCall> calls = ReadLogJournal(path_);

  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].process_id, 7u);
  EXPECT_EQ(calls[0].entry, L"Start");
  EXPECT_THAT(calls[0].arguments, ElementsAre(L"1.0.0", L"C:\\c.ini", L"C:\\\u00FC"));
  EXPECT_EQ(calls[1].process_id, 12u);
  EXPECT_EQ(calls[1].entry, L"Flush");
  EXPECT_EQ(calls[2].entry, L"Stop");
  EXPECT_THAT(calls[2].arguments, IsEmpty());
}

TEST_F(LogJournalTest, KeepsEmptyArguments) {
  Write("7\tStart\t1.0.0\t\t\n7\tWriteLog\t2\ttag\t\n");

  const std::vector<LogCall> calls = ReadLogJournal(path_);

  ASSERT_EQ(calls.size(), 2u);
  EXPECT_THAT(calls[0].arguments, ElementsAre(L"1.0.0", L"", L""));
  EXPECT_THAT(calls[1].arguments, ElementsAre(L"2", L"tag", L""));
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

}  // namespace
}  // namespace nhupdate_test
