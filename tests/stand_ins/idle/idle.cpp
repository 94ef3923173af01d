// A program that does nothing until somebody ends it. It is copied under the name that a test
// needs.

#include "base/windows.h"

int main() {
  constexpr DWORD kLongestTestMs = 60'000;  // nothing is left behind when a test is killed
  ::Sleep(kLongestTestMs);
  return 0;
}
