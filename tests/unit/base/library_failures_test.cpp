#include "base/want_of_memory.h"
#include "tests/support/child_process.h"
#include "tests/support/utf8_text.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// What std::abort ends a process with.
constexpr DWORD kAborted = 3;

constexpr wchar_t kFailing[] = L"library_failure_probe";

TEST(LibraryFailureTest, IsNoAllocationOfNoBytes) {
  EXPECT_EQ(RunProbe(kFailing, L"no bytes"), 0u);
}

TEST(LibraryFailureTest, EndsTheProcessWithoutAnException) {
  constexpr struct {
    const wchar_t* failure;
    DWORD exit_code;
  } kCases[] = {
      {L"length", kWantOfMemoryExitCode},
      {L"vector", kWantOfMemoryExitCode},
      {L"allocation", kWantOfMemoryExitCode},
      {L"range", kAborted},
      {L"null", kAborted},
      {L"terminate", kAborted},
  };
  for (const auto& failing : kCases) {
    EXPECT_EQ(RunProbe(kFailing, failing.failure), failing.exit_code) << ToUtf8(failing.failure);
  }
}

}  // namespace
}  // namespace nhupdate_test
