#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"

namespace nhupdate_test {
namespace {

class ProgramEndToEndTest : public EndToEndTest {};

TEST_F(ProgramEndToEndTest, LeavesNoTraceWithoutASwitch) {
  const std::string tree = DescribeTree(hub_.Scratch());

  for (const wchar_t* arguments : {L"", L"update", L"--update", L"-update:1", L"-upd\u00E4te %s"}) {
    const ProgramRun run = Run(arguments);

    EXPECT_EQ(run.exit_code, 0U);
    EXPECT_EQ(run.output, "");
  }

  EXPECT_EQ(DescribeTree(hub_.Scratch()), tree);
  EXPECT_FALSE(nhupdate::Exists(hub_.DataFolder() + L"\\Corvane"));
  EXPECT_EQ(DescribeProductKeys(), "");
}

TEST_F(ProgramEndToEndTest, RunsOnlyTheFirstModeInPrecedenceOfSeveral) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
  hub_.StageRelease();

  const ProgramRun run = Run(L"-final_update /SELF_update -update -x -install -DownLoad");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), StartUp() + AnotherVersionDownloaded("2.0.0"));
}

}  // namespace
}  // namespace nhupdate_test
