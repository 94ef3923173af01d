#pragma once

// A lock that the thread that has it may take again. Unlike the standard library's, taking it for
// the first time needs no memory, so it can't fail in some way of its own.

#include "base/windows.h"

namespace nhupdate {

// For std::lock_guard.
class CRecursiveLock {
 public:
  CRecursiveLock() { ::InitializeCriticalSection(&section_); }
  ~CRecursiveLock() { ::DeleteCriticalSection(&section_); }
  CRecursiveLock(const CRecursiveLock&) = delete;
  CRecursiveLock& operator=(const CRecursiveLock&) = delete;

  void lock() { ::EnterCriticalSection(&section_); }
  void unlock() { ::LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
};

}  // namespace nhupdate
