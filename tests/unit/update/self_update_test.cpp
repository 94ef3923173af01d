#include "tests/unit/update/self_update_test.h"

namespace nhupdate_test {

SelfUpdateTest::SelfUpdateTest(const ProductOptions& options) : WorkflowTest(options) {
  AddFile(options.module + L"\\NHUpdateManager.exe");
}

Lines SelfUpdateTest::StoppedLines() {
  return {L"2|Function : Self Update", L"2|Target process NHUpdateManager.exe not found."};
}

Lines SelfUpdateTest::CopyLines(const std::wstring& from, const std::wstring& to) {
  const std::wstring text = L"\\Config\\NHUpdateManager.Default.json";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Delete Dir : " + to + L"\\Config",
      L"2|Copy folder from " + from + L"\\Config to " + to + L"\\Config",
      L"2|Copy file from " + from + text + L" to " + to + text,
      L"2|Copy file from " + from + L"\\NHUpdateManager.exe to " + to + L"\\NHUpdateManager.exe",
      L"2|Copy file from " + from + L"\\NSWLogDynamic64U.dll to " + to + L"\\NSWLogDynamic64U.dll",
  };
}

Lines SelfUpdateTest::FailedCopyLines() {
  Lines lines = CopyLines();
  lines.resize(4);
  return Join(
      {lines,
       {L"4|Fail to copy file = 32", L"3|Fail to copy NHUpdateManager, sleep and try again."}});
}

Lines SelfUpdateTest::CopiedLine() {
  return {L"2|Copy NHUpdateManager success."};
}

}  // namespace nhupdate_test
