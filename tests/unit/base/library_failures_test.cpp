#include <gtest/gtest.h>

#include <string>

#include "base/want_of_memory.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {
namespace {

// What std::abort ends a process with.
constexpr DWORD kAborted = 3;

DWORD RunProbe(const std::wstring& task) {
  const std::wstring probe = L"\"" + TestProgramFolder() + L"\\library_failure_probe.exe\"";
  return ExitCodeOf(StartChild(probe + L" \"" + task + L"\""));
}

TEST(LibraryFailureTest, IsNoAllocationOfNoBytes) {
  EXPECT_EQ(RunProbe(L"no bytes"), 0u);
}

TEST(LibraryFailureTest, EndsTheProcessWithoutAnException) {
  struct Case {
    const wchar_t* failure;
    DWORD exit_code;
  };
  constexpr Case kCases[] = {
      {L"length", nhupdate::kWantOfMemoryExitCode},
      {L"vector", nhupdate::kWantOfMemoryExitCode},
      {L"allocation", nhupdate::kWantOfMemoryExitCode},
      {L"range", kAborted},
      {L"null", kAborted},
      {L"terminate", kAborted},
  };
  for (const Case& failing : kCases) {
    EXPECT_EQ(RunProbe(failing.failure), failing.exit_code) << ToUtf8(failing.failure);
  }
}

}  // namespace
}  // namespace nhupdate_test
