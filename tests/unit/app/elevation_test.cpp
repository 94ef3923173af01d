#include "app/elevation.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::IsProcessElevated;

class ElevationTest : public testing::Test {
 protected:
  static inline const HANDLE kToken = reinterpret_cast<HANDLE>(std::uintptr_t{0x70C3A});

  BOOL can_open_ = TRUE;
  BOOL can_ask_ = TRUE;
  DWORD answer_ = 1;

  INTERPOSER(OpenProcessToken) open_{[this](HANDLE process, DWORD access, HANDLE* token) -> BOOL {
    EXPECT_EQ(process, ::GetCurrentProcess());
    EXPECT_EQ(access, static_cast<DWORD>(TOKEN_QUERY));
    if (!can_open_) {
      ::SetLastError(ERROR_ACCESS_DENIED);
      return FALSE;
    }
    *token = kToken;
    return TRUE;
  }};
  INTERPOSER(GetTokenInformation) ask_{
      [this](HANDLE token, TOKEN_INFORMATION_CLASS what, void* answer, DWORD size, DWORD*) -> BOOL {
        EXPECT_EQ(token, kToken);
        EXPECT_EQ(what, TokenElevation);
        EXPECT_EQ(size, 4U);
        *static_cast<DWORD*>(answer) = answer_;
        return can_ask_;
      }};
  INTERPOSER(CloseHandle) close_{[](HANDLE handle) -> BOOL {
    EXPECT_EQ(handle, kToken);
    return TRUE;
  }};
};

TEST_F(ElevationTest, IsWhatTheTokenSays) {
  struct Case {
    DWORD answer;
    bool expected;
  };
  for (const Case& c : {Case{0, false}, Case{1, true}, Case{2, true}, Case{0x80000000, true}}) {
    answer_ = c.answer;

    EXPECT_EQ(IsProcessElevated(), c.expected) << c.answer;
  }
}

TEST_F(ElevationTest, IsAskedOfATokenThatIsClosedOnce) {
  EXPECT_TRUE(IsProcessElevated());

  EXPECT_EQ(close_.Calls(), 1);
}

TEST_F(ElevationTest, IsMissingWhenTheTokenCannotBeOpened) {
  can_open_ = FALSE;

  EXPECT_FALSE(IsProcessElevated());

  EXPECT_EQ(ask_.Calls(), 0);
  EXPECT_EQ(close_.Calls(), 0);
}

TEST_F(ElevationTest, IsMissingWhenTheTokenCannotBeAsked) {
  can_ask_ = FALSE;

  EXPECT_FALSE(IsProcessElevated());

  EXPECT_EQ(close_.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
