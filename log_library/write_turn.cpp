#include "log_library/write_turn.h"

#include <algorithm>

#include "log_library/object_access.h"

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

// Whoever keeps a standing turn is in it for the time of one record. So many looks follow each
// other at once before more time is given to him.
constexpr int kLooksAtOnce = 100;

}  // namespace

void CWriterQueue::Open() {
  mutex_.Reset(OpenSharedMutex(kMutexName));
  if (mutex_.IsValid() && !standing_turn_.Open()) {
    mutex_.Reset();
  }
}

bool CWriterQueue::Enter() {
  if (!mutex_.IsValid()) {
    return false;
  }
  is_standing_ = standing_turn_.Enter();
  if (is_standing_) {
    // Without patience to be regained nobody asks how long the turn takes.
    turn_begin_ = patience_ < kPatience ? CFineClock::now() : CFineClock::time_point();
    return true;
  }
  // Measured finely: whoever holds the mutex for a few milliseconds at a time, again and again,
  // would pass unnoticed on the clock of the system's ticks.
  const auto begin = CFineClock::now();
  const std::chrono::milliseconds limit = WaitLimit();
  const bool is_ours = WaitForMutex(limit) && WaitForStandingTurn(begin + limit);
  turn_begin_ = CFineClock::now();
  SpendPatience(is_ours ? turn_begin_ - begin : patience_);
  return is_ours;
}

bool CWriterQueue::WaitForMutex(std::chrono::milliseconds limit) const {
  const DWORD result = ::WaitForSingleObject(mutex_.Get(), static_cast<DWORD>(limit.count()));
  // A process that was killed in its turn leaves nothing half done: a record and a rotation are
  // one step each.
  return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

bool CWriterQueue::WaitForStandingTurn(CFineClock::time_point end) {
  standing_turn_.TakeBack();
  for (int look = 0; !standing_turn_.IsOver(); ++look) {
    if (CFineClock::now() >= end) {
      ::ReleaseMutex(mutex_.Get());
      return false;
    }
    ::Sleep(look < kLooksAtOnce ? 0 : 1);
  }
  return true;
}

std::chrono::milliseconds CWriterQueue::WaitLimit() {
  if (patience_ < kShortestWait) {
    if (::GetTickCount64() < no_wait_before_) {
      return {};
    }
    patience_ = kPatience;
  }
  return std::chrono::duration_cast<std::chrono::milliseconds>(patience_);
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
  if (is_standing_) {
    standing_turn_.Leave();
  } else {
    standing_turn_.CountTurn();
    ::ReleaseMutex(mutex_.Get());  // can't fail in one's own turn
  }
  if (patience_ < kPatience) {
    RegainPatience(CFineClock::now() - turn_begin_);
  }
}

}  // namespace nhupdate
