#include "log_library/write_turn.h"

#include <algorithm>

// This needs <windows.h> first.
#include <sddl.h>

namespace nhupdate {

namespace {

constexpr ULONGLONG kNoWaitMs = 10'000;

// Several times what a turn is waited for when four processes do nothing but write, on a machine
// that does nothing else.
constexpr std::chrono::milliseconds kPatienceOfATurn{2};

// While one waits, others have their turns, which take about as long as one's own: more of them
// than there are ever writers at once. A turn counts only up to a limit: one that hung says nothing
// about those of the others.
constexpr int kTurnsOfOthers = 16;
constexpr std::chrono::milliseconds kLongestTurn{2};

// Waiting for less than this is not worth a call of its own.
constexpr std::chrono::milliseconds kShortestWait{1};

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
  ::LocalFree(descriptor);  // nothing could be done about a failure
}

bool CWriterQueue::Enter() {
  if (!mutex_.IsValid()) {
    return false;
  }
  // Measured finely: whoever holds the mutex for a few milliseconds at a time, again and again,
  // would pass unnoticed on the clock of the system's ticks.
  const auto begin = CFineClock::now();
  const DWORD result = ::WaitForSingleObject(mutex_.Get(), WaitLimitMs());
  turn_begin_ = CFineClock::now();
  SpendPatience(result == WAIT_TIMEOUT ? patience_ : turn_begin_ - begin);
  // A process that was killed in its turn leaves nothing half done: a record and a rotation are
  // one step each.
  return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

DWORD CWriterQueue::WaitLimitMs() {
  if (patience_ < kShortestWait) {
    if (::GetTickCount64() < no_wait_before_) {
      return 0;
    }
    patience_ = kPatience;
  }
  return static_cast<DWORD>(
      std::chrono::duration_cast<std::chrono::milliseconds>(patience_).count());
}

void CWriterQueue::SpendPatience(CFineClock::duration waited) {
  if (patience_ < kShortestWait) {
    return;
  }
  patience_ -= waited;
  if (patience_ < kShortestWait) {
    no_wait_before_ = ::GetTickCount64() + kNoWaitMs;
  }
}

void CWriterQueue::RegainPatience(CFineClock::duration turn) {
  using Duration = CFineClock::duration;
  if (patience_ >= kShortestWait) {
    const Duration regained =
        kPatienceOfATurn + kTurnsOfOthers * std::min<Duration>(turn, kLongestTurn);
    patience_ = std::min<Duration>(patience_ + regained, kPatience);
  }
}

void CWriterQueue::Leave() {
  ::ReleaseMutex(mutex_.Get());  // can't fail in one's own turn
  RegainPatience(CFineClock::now() - turn_begin_);
}

}  // namespace nhupdate
