#pragma once

// A stand-in that a test starts itself and that runs until the object is gone.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class CStandInProcess {
 public:
  // Starts `executable EVENTS arguments` and waits until it says that it is ready.
  explicit CStandInProcess(const std::wstring& executable, const std::wstring& arguments = L"");
  ~CStandInProcess();
  CStandInProcess(const CStandInProcess&) = delete;
  CStandInProcess& operator=(const CStandInProcess&) = delete;

  // Lets it end, and waits until it has; a test failure when it doesn't. Does nothing the second
  // time.
  void End();

  [[nodiscard]] DWORD Id() const { return id_; }
  [[nodiscard]] bool IsRunning() const;

 private:
  nhupdate::UniqueKernelHandle ready_;
  nhupdate::UniqueKernelHandle end_;
  nhupdate::UniqueKernelHandle process_;
  DWORD id_ = 0;
};

// A file that another process holds open; see tests/stand_ins/file_holder for the sharing.
class CHeldFile : public CStandInProcess {
 public:
  explicit CHeldFile(const std::wstring& path, int sharing = FILE_SHARE_READ);
};

}  // namespace nhupdate_test
