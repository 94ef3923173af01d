#include "app/elevation.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ElevationTest, IsWhatATokenSaysThatCanBeAskedAndIsClosed) {
  const auto token_handle = reinterpret_cast<HANDLE>(std::uintptr_t{0x70C3A});
  const struct {
    const char* name;
    BOOL can_open;
    BOOL can_ask;
    DWORD answer;
    bool expected;
  } cases[] = {
      {"no", TRUE, TRUE, 0, false},
      {"yes", TRUE, TRUE, 1, true},
      {"another yes", TRUE, TRUE, 2, true},
      {"the largest yes", TRUE, TRUE, 0x80000000, true},
      {"a token that can't be opened", FALSE, TRUE, 1, false},
      {"a token that can't be asked", TRUE, FALSE, 1, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    INTERPOSER(OpenProcessToken) open([&](HANDLE process, DWORD access, HANDLE* token) {
      EXPECT_EQ(process, ::GetCurrentProcess());
      EXPECT_EQ(access, static_cast<DWORD>(TOKEN_QUERY));
      *token = c.can_open ? token_handle : nullptr;
      return c.can_open;
    });
    INTERPOSER(GetTokenInformation) ask(
        [&](HANDLE token, TOKEN_INFORMATION_CLASS what, void* answer, DWORD size, DWORD*) {
          EXPECT_EQ(token, token_handle);
          EXPECT_EQ(what, TokenElevation);
          EXPECT_EQ(size, 4U);
          *static_cast<DWORD*>(answer) = c.answer;
          return c.can_ask;
        });
    INTERPOSER(CloseHandle) close([&](HANDLE handle) {
      EXPECT_EQ(handle, token_handle);
      return TRUE;
    });

    EXPECT_EQ(IsProcessElevated(), c.expected);

    EXPECT_EQ(ask.Calls(), c.can_open ? 1 : 0);
    EXPECT_EQ(close.Calls(), c.can_open ? 1 : 0);
  }
}

}  // namespace
}  // namespace nhupdate_test
