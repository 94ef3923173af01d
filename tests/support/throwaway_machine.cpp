#include "tests/support/throwaway_machine.h"

#include <array>
#include <string>

#include "base/windows.h"
#include "tests/support/wine.h"

namespace nhupdate_test {

bool IsThrowawayMachine() {
  if (IsWine()) {
    return true;
  }
  std::array<wchar_t, 4> value = {};
  ::GetEnvironmentVariableW(kThrowawayVariable, value.data(), static_cast<DWORD>(value.size()));
  return value.data() == std::wstring(L"1");
}

}  // namespace nhupdate_test
