#include "tests/stand_ins/support/event_wait.h"

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_stand_in {

bool BeReadyAndWait(const std::wstring& name, unsigned long time_limit_ms) {
  const nhupdate::UniqueKernelHandle ready(
      ::OpenEventW(EVENT_MODIFY_STATE, FALSE, (name + L".ready").c_str()));
  const nhupdate::UniqueKernelHandle end(
      ::OpenEventW(SYNCHRONIZE, FALSE, (name + L".end").c_str()));
  if (!ready.IsValid() || !end.IsValid()) {
    return false;
  }
  ::SetEvent(ready.Get());
  ::WaitForSingleObject(end.Get(), time_limit_ms);
  return true;
}

}  // namespace nhupdate_stand_in
