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

void WorkflowTest::Remove(const std::wstring& path) {
  EXPECT_TRUE(::DeleteFileW((product_.Base() + path).c_str())) << testing::PrintToString(path);
}

}  // namespace nhupdate_test
