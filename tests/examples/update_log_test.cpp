#include "examples/host/update_log.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nimba_hub::CUpdateLog;
using nimba_hub::Mode;
using nimba_hub::StageEnd;

std::string Line(int process_id, const std::string& text) {
  return "2026-11-21T15:29:01.146+00:00 [" + std::to_string(process_id) +
         ":412] INFO  [NHUpdateManager] " + text + "\r\n";
}

class HostUpdateLogTest : public testing::Test {
 protected:
  void Append(const std::string& lines, const wchar_t* name = L"NHUpdateManager.log") const {
    AppendFileBytes(scratch_.Path() + L"\\" + name, lines);
  }

  static void ExpectEnd(const std::optional<StageEnd>& end, Mode stage, std::optional<DWORD> code) {
    ASSERT_TRUE(end);
    EXPECT_EQ(end->stage, stage);
    EXPECT_EQ(end->code, code);
  }

  const ScratchFolder scratch_;
};

TEST_F(HostUpdateLogTest, HasNoStageBeforeOneBegins) {
  Append(Line(1, "Function : Final Update") + Line(1, "Return 0"));
  const CUpdateLog log(scratch_.Path());

  Append(Line(1, "Return 2") + Line(2, "Function : Download") + Line(2, "Return 12"));

  EXPECT_FALSE(log.LastStage());
}

TEST_F(HostUpdateLogTest, NeedsNoFolder) {
  const CUpdateLog log(scratch_.Path() + L"\\none");

  EXPECT_FALSE(log.LastStage());
}

TEST_F(HostUpdateLogTest, TellsTheResultOfTheLastStage) {
  const CUpdateLog log(scratch_.Path());

  // The lines of two processes may come in any order.
  Append(Line(9, "Function : Update") + Line(8, "Function : Self Update") + Line(9, "Return 0") +
         Line(8, "Return 0") + Line(7, "Function : Final Update") + Line(7, "Return 2"));

  ExpectEnd(log.LastStage(), Mode::kFinalUpdate, 2);
}

TEST_F(HostUpdateLogTest, TellsThatAStageHasNoResult) {
  const CUpdateLog log(scratch_.Path());

  Append(Line(9, "Function : Update") + Line(9, "Return 0") + Line(8, "Function : Self Update"));

  ExpectEnd(log.LastStage(), Mode::kSelfUpdate, std::nullopt);
}

TEST_F(HostUpdateLogTest, IsNotDeceivedByATextWithFurtherLines) {
  const CUpdateLog log(scratch_.Path());

  Append(Line(9, "Function : Update") + Line(9, "Launch path : x\r\n    " + Line(9, "Return 0")));

  ExpectEnd(log.LastStage(), Mode::kUpdate, std::nullopt);
}

TEST_F(HostUpdateLogTest, FollowsAFileThatIsPutAside) {
  Append(Line(1, "Function : Final Update") + Line(1, "Return 16"));
  const CUpdateLog log(scratch_.Path());

  Append(Line(9, "Function : Final Update"));
  ASSERT_TRUE(::MoveFileW((scratch_.Path() + L"\\NHUpdateManager.log").c_str(),
                          (scratch_.Path() + L"\\NHUpdateManager.7.log").c_str()));
  Append(Line(9, "Return 0"));

  ExpectEnd(log.LastStage(), Mode::kFinalUpdate, 0);
}

TEST_F(HostUpdateLogTest, ReadsWhatAProcessWroteToAFileOfItsOwn) {
  const CUpdateLog log(scratch_.Path());

  Append(Line(9, "Function : Self Update"));
  Append(Line(8, "Function : Final Update") + Line(8, "Return 1"), L"NHUpdateManager.12.log");
  Append(Line(7, "Function : Final Update") + Line(7, "Return 0"), L"Other.log");

  ExpectEnd(log.LastStage(), Mode::kFinalUpdate, 1);
}

}  // namespace
}  // namespace nhupdate_test
