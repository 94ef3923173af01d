#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/golden.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/wine.h"

namespace nhupdate_test {
namespace {

struct RelianceRun {
  DWORD exit_code = 0;
  std::string output;
};

RelianceRun RunReliances(const ScratchFolder& scratch) {
  const std::wstring output_path = scratch.Path() + L"\\output.txt";
  SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
  nhupdate::UniqueFile output(::CreateFileW(output_path.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                            &inherited, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                            nullptr));
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output.Get();
  std::wstring command_line =
      L"\"" + TestProgramFolder() + L"\\reliances.exe\" \"" + scratch.Path() + L"\"";
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &information)) {
    ADD_FAILURE() << "reliances.exe does not start: " << ::GetLastError();
    return {};
  }
  const nhupdate::UniqueKernelHandle thread(information.hThread);
  const nhupdate::UniqueKernelHandle process(information.hProcess);
  constexpr DWORD kLimitMs = 100 * 1000;
  EXPECT_EQ(::WaitForSingleObject(process.Get(), kLimitMs), static_cast<DWORD>(WAIT_OBJECT_0));
  RelianceRun run;
  EXPECT_TRUE(::GetExitCodeProcess(process.Get(), &run.exit_code));
  output.Reset();
  run.output = ReadFileBytes(output_path);
  return run;
}

// Under Wine the administrator of the system below may write to everything.
bool IsReadOnlyObeyed(const ScratchFolder& scratch) {
  const std::wstring file = scratch.Path() + L"\\read_only.txt";
  WriteFileBytes(file, "content");
  ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
  const nhupdate::UniqueFile opened(::CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, 0, nullptr));
  return !opened.IsValid();
}

TEST(ReliancesTest, AreAnsweredAsIsKnown) {
  const ScratchFolder scratch;

  const RelianceRun run = RunReliances(scratch);

  EXPECT_EQ(run.exit_code, 0U) << run.output;
  // Another Wine may be nearer to Windows, which is no fault of anybody's.
  if (WineVersion().starts_with("8.")) {
    ExpectGolden(run.output, IsReadOnlyObeyed(scratch) ? "ordinary_user" : "administrator");
  }
}

TEST(ReliancesTest, LeaveNothingBehind) {
  const ScratchFolder scratch;

  const RelianceRun run = RunReliances(scratch);

  EXPECT_FALSE(run.output.empty());
  EXPECT_EQ(ListTree(scratch.Path()), std::vector<std::wstring>{L"output.txt"});
  HKEY software = nullptr;
  ASSERT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &software), 0);
  const nhupdate::UniqueRegistryKey owner(software);
  std::wstring name(256, L'\0');
  for (DWORD index = 0;
       ::RegEnumKeyW(software, index, name.data(), static_cast<DWORD>(name.size())) == 0; ++index) {
    EXPECT_FALSE(name.starts_with(L"nhupdate_reliances_")) << index;
  }
}

}  // namespace
}  // namespace nhupdate_test
