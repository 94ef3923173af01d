// A process that can't be ended from outside: stubborn EVENTS. It may be looked at, but its own
// access list denies everybody the right to terminate it. It ends by itself when the event
// EVENTS.end is set, at the latest after two minutes. With another argument, whatever it is, it can
// be ended.

#include "base/windows.h"
#include "tests/stand_ins/support/event_wait.h"
#include "tests/stand_ins/support/wide_main.h"

#include <sddl.h>  // needs <windows.h> first

namespace {

constexpr DWORD kTimeLimitMs = 120'000;

bool DenyOwnTermination() {
  // Everybody is denied PROCESS_TERMINATE (1) and the right to change that (0xC0000), and allowed
  // the rest.
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(
          L"D:(D;;0xC0001;;;WD)(A;;0x13FFFE;;;WD)", SDDL_REVISION_1, &descriptor, nullptr)) {
    return false;
  }
  const BOOL is_set =
      ::SetKernelObjectSecurity(::GetCurrentProcess(), DACL_SECURITY_INFORMATION, descriptor);
  ::LocalFree(descriptor);
  return is_set != FALSE;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2 || (count == 2 && !DenyOwnTermination())) {
    return 1;
  }
  return nhupdate_stand_in::BeReadyAndWait(arguments[1], kTimeLimitMs) ? 0 : 1;
}
