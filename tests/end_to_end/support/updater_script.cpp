#include "tests/end_to_end/support/updater_script.h"

#include <gtest/gtest.h>

#include "base/windows.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr wchar_t kName[] = L"\\Script.ini";

}  // namespace

void PutScript(const std::wstring& folder) {
  // The mark makes Windows keep such a file in UTF-16, in which every path can be written.
  WriteFileBytes(folder + kName, "\xFF\xFE");
}

void WriteTask(const std::wstring& folder, const std::wstring& task, const UpdaterTask& what) {
  const std::wstring file = folder + kName;
  const auto write = [&](const wchar_t* key, const std::wstring& value) {
    EXPECT_TRUE(::WritePrivateProfileStringW(task.c_str(), key, value.c_str(), file.c_str()));
  };
  write(L"ExitCode", std::to_wstring(what.exit_code));
  write(L"DelayMs", std::to_wstring(what.delay_ms));
  write(L"Stage", what.stage);
  write(L"NewUpdater", what.new_updater);
}

}  // namespace nhupdate_test
