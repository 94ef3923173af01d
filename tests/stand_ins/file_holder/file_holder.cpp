// Holds a file open, as another program would: file_holder EVENTS PATH SHARING MILLISECONDS.
// SHARING is the sum of FILE_SHARE_READ (1), FILE_SHARE_WRITE (2) and FILE_SHARE_DELETE (4) that
// it lets others have. It lets go when the event EVENTS.end is set or the time is over.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/stand_ins/support/event_wait.h"

#include <shellapi.h>  // needs <windows.h> first

int main() {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (count != 5) {
    return 1;
  }
  const nhupdate::UniqueFile file(::CreateFileW(arguments[2], GENERIC_READ,
                                                std::stoul(arguments[3]), nullptr, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
  return file.IsValid() && nhupdate_stand_in::BeReadyAndWait(arguments[1], std::stoul(arguments[4]))
             ? 0
             : 1;
}
