#include "log_library/standing_turn.h"

#include <atomic>

#include "log_library/object_access.h"

namespace nhupdate {

namespace {

using Word = std::atomic_ref<std::uint32_t>;
static_assert(Word::is_always_lock_free, "Processes share no locks of the standard library.");

// For all sessions, as the mutex is. In that name space only services and elevated programs may
// make memory, but everybody may open what they have made.
constexpr wchar_t kMemoryName[] = L"Global\\NHUpdateManager.log.turn";

// Is there as long as somebody takes turns by the mutex without sharing the memory.
constexpr wchar_t kUnsharedName[] = L"Global\\NHUpdateManager.log.unshared";

constexpr ULONGLONG kLookIntervalMs = 1000;

std::wstring PresenceName(std::uint32_t number) {
  return L"Global\\NHUpdateManager.log.writer" + std::to_wstring(number);
}

// Whoever makes memory first may leave it without any storage. A step in it would end the process.
bool HasStorage(const UniqueView& view) {
  MEMORY_BASIC_INFORMATION information = {};
  ::VirtualQuery(view.Get(), &information, sizeof(information));  // without it the state stays 0
  return information.State == MEM_COMMIT;
}

// True also when that can't be found out.
bool Exists(const wchar_t* mutex_name) {
  const UniqueKernelHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, mutex_name));
  const DWORD error = ::GetLastError();
  return mutex.IsValid() || error != ERROR_FILE_NOT_FOUND;
}

}  // namespace

bool CStandingTurn::Open() {
  // In this order, and CountTurn looks for it when the memory is there: of two processes that begin
  // at the same moment, either this one finds the memory or the other one finds this.
  presence_.Reset(OpenSharedMutex(kUnsharedName));
  if (!OpenShared()) {
    return presence_.IsValid();
  }
  number_ = Word(All().last_number).fetch_add(1) + 1;
  presence_.Reset(OpenSharedMutex(PresenceName(number_).c_str()));
  if (!presence_.IsValid()) {
    number_ = 0;
  }
  return true;
}

bool CStandingTurn::OpenShared() {
  constexpr DWORD kAccess = FILE_MAP_READ | FILE_MAP_WRITE;
  // To make what is there already would ask for more rights than everyone has.
  section_.Reset(::OpenFileMappingW(kAccess, FALSE, kMemoryName));
  if (!section_.IsValid()) {
    CObjectAccess access(kMemoryAccess);
    if (access.Get() != nullptr) {
      section_.Reset(::CreateFileMappingW(INVALID_HANDLE_VALUE, access.Get(), PAGE_READWRITE, 0,
                                          sizeof(Shared), kMemoryName));
    }
  }
  if (!section_.IsValid()) {
    // Another process may have made it in between.
    section_.Reset(::OpenFileMappingW(kAccess, FALSE, kMemoryName));
  }
  if (section_.IsValid()) {
    view_.Reset(::MapViewOfFile(section_.Get(), kAccess, 0, 0, sizeof(Shared)));
  }
  if (view_.IsValid() && !HasStorage(view_)) {
    view_.Reset();
  }
  return view_.IsValid();
}

bool CStandingTurn::Enter() {
  if (number_ == 0 || Word(All().holder).load(std::memory_order_relaxed) != number_) {
    return false;
  }
  // Who doesn't share the memory can't take the turn back either. He is looked for now and then,
  // since it takes a call into the system.
  if (::GetTickCount64() >= next_look_ && !IsSharedByAll()) {
    return false;
  }
  // First the word that others wait for, then another look: whoever takes the turn back does both
  // the other way round, so that one of the two sees the other. The turn may be another process's
  // by now, whose word this is then.
  std::uint32_t nobody = 0;
  if (!Word(All().busy).compare_exchange_strong(nobody, number_)) {
    return false;
  }
  if (Word(All().holder).load() != number_) {
    Leave();
    return false;
  }
  return true;
}

bool CStandingTurn::IsSharedByAll() {
  next_look_ = ::GetTickCount64() + kLookIntervalMs;
  return !Exists(kUnsharedName);
}

void CStandingTurn::Leave() {
  Word(All().busy).store(0, std::memory_order_release);
}

void CStandingTurn::TakeBack() {
  if (view_.IsValid()) {
    Word(All().holder).store(0);
  }
}

bool CStandingTurn::IsOver() {
  if (!view_.IsValid()) {
    return true;
  }
  std::uint32_t busy = Word(All().busy).load();
  if (busy == 0) {
    return true;
  }
  // What a process that ended in its turn leaves behind is nobody's, and this one is in no standing
  // turn, whatever stands there.
  const bool is_nobodys = busy == number_ || !Exists(PresenceName(busy).c_str());
  return is_nobodys && Word(All().busy).compare_exchange_strong(busy, 0);
}

void CStandingTurn::CountTurn() {
  if (!view_.IsValid()) {
    return;
  }
  const bool is_in_a_row = Word(All().last_writer).exchange(number_) == number_;
  turns_in_a_row_ = is_in_a_row ? turns_in_a_row_ + 1 : 1;
  if (turns_in_a_row_ < kTurnsInARow || number_ == 0) {
    return;
  }
  turns_in_a_row_ = 0;
  if (IsSharedByAll()) {
    Word(All().holder).store(number_);
  }
}

}  // namespace nhupdate
