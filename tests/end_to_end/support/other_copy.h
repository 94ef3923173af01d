#pragma once

// Another copy of the program, which is only a stand-in, that runs until the object is gone.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/child_process.h"

namespace nhupdate_test {

enum class Ending { kRefused, kAllowed };  // from outside

class COtherCopy {
 public:
  // Puts it there, starts it, and waits until it says that it is ready.
  explicit COtherCopy(const std::wstring& executable, Ending ending = Ending::kRefused);
  ~COtherCopy();
  COtherCopy(const COtherCopy&) = delete;
  COtherCopy& operator=(const COtherCopy&) = delete;

  [[nodiscard]] DWORD Id() const { return process_.id; }
  [[nodiscard]] bool IsRunning() const;

 private:
  nhupdate::UniqueKernelHandle ready_;
  nhupdate::UniqueKernelHandle end_;
  ChildProcess process_;
};

}  // namespace nhupdate_test
