#include "log_library/write_turn.h"

#include <tuple>

// This needs <windows.h> first.
#include <sddl.h>

namespace nhupdate {

namespace {

constexpr DWORD kTurnWaitMs = 1000;
constexpr ULONGLONG kNoWaitMs = 10'000;

// The log folder belongs to the machine and not to a session: a service or a second user who is
// logged on writes the same file, so the name is one for all sessions. Unlike shared memory, a
// mutex may be made in the global namespace by everyone.
constexpr wchar_t kMutexName[] = L"Global\\NHUpdateManager.log";

// What an elevated process makes would otherwise be closed to the others. Everyone who is logged
// on may wait for and release the mutex (SYNCHRONIZE and MUTEX_MODIFY_STATE), and no more.
constexpr wchar_t kMutexAccess[] = L"D:(A;;0x00100001;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)";

}  // namespace

void CWriterQueue::Open() {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(kMutexAccess, SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
    return;  // a mutex that shuts others out would be worse than none
  }
  SECURITY_ATTRIBUTES attributes = {sizeof(attributes), descriptor, FALSE};
  mutex_.Reset(::CreateMutexExW(&attributes, kMutexName, 0, SYNCHRONIZE | MUTEX_MODIFY_STATE));
  std::ignore = ::LocalFree(descriptor);  // nothing could be done about a failure
}

bool CWriterQueue::Enter() {
  if (!mutex_.IsValid()) {
    return false;
  }
  const bool may_wait = ::GetTickCount64() >= no_wait_before_;
  const DWORD result = ::WaitForSingleObject(mutex_.Get(), may_wait ? kTurnWaitMs : 0);
  // A process that was killed in its turn leaves nothing half done: a record and a rotation are
  // one step each.
  if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) {
    no_wait_before_ = 0;
    return true;
  }
  if (may_wait) {
    no_wait_before_ = ::GetTickCount64() + kNoWaitMs;
  }
  return false;
}

void CWriterQueue::Leave() {
  std::ignore = ::ReleaseMutex(mutex_.Get());  // can't fail in one's own turn
}

}  // namespace nhupdate
