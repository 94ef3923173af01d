#include "tests/end_to_end/support/process_token.h"

#include <gtest/gtest.h>

namespace nhupdate_test {

namespace {

using nhupdate::UniqueKernelHandle;

// What an administrator gets who isn't asked for consent. Wine doesn't call it less than elevated.
UniqueKernelHandle Restricted(HANDLE token) {
  UniqueKernelHandle restricted;
  ::CreateRestrictedToken(token, LUA_TOKEN, 0, nullptr, 0, nullptr, 0, nullptr,
                          restricted.Receive());
  return restricted;
}

// The other one of the pair that an administrator has. Windows gives it only to look at, unless one
// has the privilege to act as the system; Wine to everybody.
UniqueKernelHandle Linked(HANDLE token) {
  TOKEN_LINKED_TOKEN linked = {};
  DWORD size = 0;
  ::GetTokenInformation(token, TokenLinkedToken, &linked, sizeof(linked), &size);
  return UniqueKernelHandle(linked.LinkedToken);
}

}  // namespace

UniqueKernelHandle OpenOwnToken() {
  UniqueKernelHandle own;
  EXPECT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_ALL_ACCESS, own.Receive()));
  return own;
}

bool IsElevated(HANDLE token) {
  TOKEN_ELEVATION elevation = {};
  DWORD size = 0;
  EXPECT_TRUE(::GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size));
  return elevation.TokenIsElevated != 0;
}

UniqueKernelHandle MakeToken(HANDLE token, bool is_elevated) {
  for (const auto make : {&Restricted, &Linked}) {
    UniqueKernelHandle made = make(token);
    if (made.IsValid() && IsElevated(made.Get()) == is_elevated) {
      return made;
    }
  }
  ADD_FAILURE() << "There is no token that is " << (is_elevated ? "elevated." : "not elevated.");
  return UniqueKernelHandle();
}

}  // namespace nhupdate_test
