// Keeps a Wine prefix's desktop alive between the tests of a lane: desktop_keeper READY_FILE. The
// first window of a prefix starts a desktop process, which takes a second, and the last one to
// close ends it. This program has a window that nobody sees until no test has asked for it for a
// quarter of an hour, by setting the event "nhupdate-desktop-used": longer than a whole test run,
// since a program that starts just when the desktop ends may be ended with it. The file is there as
// long as the window.

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/stand_ins/support/wide_main.h"

namespace {

constexpr DWORD kIdleLimitMs = 15 * 60'000;

bool IsStillUsed(HANDLE used) {
  while (true) {
    const DWORD woken = ::MsgWaitForMultipleObjects(1, &used, FALSE, kIdleLimitMs, QS_ALLINPUT);
    if (woken != WAIT_OBJECT_0 + 1) {
      return woken == WAIT_OBJECT_0;
    }
    MSG message = {};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::DispatchMessageW(&message);
    }
  }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  const nhupdate::UniqueKernelHandle used(
      ::CreateEventW(nullptr, FALSE, FALSE, L"nhupdate-desktop-used"));
  if (count != 2 || ::GetLastError() == ERROR_ALREADY_EXISTS) {
    return 1;
  }
  ::CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  const nhupdate::UniqueFile ready(
      ::CreateFileW(arguments[1], GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                    nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  while (IsStillUsed(used.Get())) {
  }
  return 0;
}
