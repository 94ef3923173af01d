#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

WorkflowTest::WorkflowTest(const ProductOptions& options) : product_(options) {
  WriteFileBytes(product_.Module() + L"\\Config\\NHUpdateManager.Default.json",
                 R"({"KEY_UPDATE_TITLE": "Update",
                     "KEY_FAIL_COMMON_ERROR": "The update failed.",
                     "KEY_FAIL_NEED_STOP_NHUPDATEMANAGER": "Close the update manager."})");
  product_.Start();
  product_.ForgetRecords();
}

void WorkflowTest::LoseElevation() {
  product_.StartUnelevated();
  product_.ForgetRecords();
}

void WorkflowTest::TellRun(const std::string& heading, const std::vector<ShellAnswer>& script) {
  const ScriptedShell shell(script);
  Tell(heading, Run());
  TellEvents(shell);
}

void WorkflowTest::Tell(const std::string& heading, int result) {
  TellHeading(heading);
  TellLines(product_.Transcript());
  for (; told_boxes_ < boxes_.Shown().size(); ++told_boxes_) {
    const ShownBox& box = boxes_.Shown()[told_boxes_];
    EXPECT_EQ(box, ErrorBoxOf(box.text, box.caption));
    TellLine(L"[" + box.caption + L"] " + box.text.substr(0, box.text.find(L'\n')));
    if (box.text.find(L'\n') != std::wstring::npos) {
      EXPECT_EQ(box.text.substr(box.text.find(L'\n') + 1), product_.Base() + L"\\new.txt");
      TellLine(L"         {base}\\new.txt");
    }
  }
  for (; told_sleeps_ < sleeps_.Milliseconds().size(); ++told_sleeps_) {
    TellLine(L"~ sleep " + std::to_wstring(sleeps_.Milliseconds()[told_sleeps_]));
  }
  TellLine(L"= " + std::to_wstring(result));
  product_.ForgetRecords();
}

void WorkflowTest::Remove(const std::wstring& path) {
  EXPECT_TRUE(::DeleteFileW((product_.Base() + path).c_str())) << PrintToString(path);
}

}  // namespace nhupdate_test
