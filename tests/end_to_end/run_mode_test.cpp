#include "tests/end_to_end/support/end_to_end_test.h"

namespace nhupdate_test {
namespace {

class ProgramEndToEndTest : public EndToEndTest {};

TEST_F(ProgramEndToEndTest, LeavesNoTraceWithoutASwitch) {
  for (const wchar_t* arguments : {L"", L"update", L"--update", L"-update:1", L"-upd\u00E4te %s"}) {
    ExpectGoldenRun(0, Run(arguments));
  }
}

TEST_F(ProgramEndToEndTest, RunsOnlyTheFirstModeInPrecedenceOfSeveral) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
  hub_.StageRelease();

  ExpectGoldenRun(12, Run(L"-final_update /SELF_update -update -x -install -DownLoad"));
}

}  // namespace
}  // namespace nhupdate_test
