#pragma once

// Who may use the objects that all writers of the machine share.

#include "base/windows.h"

namespace nhupdate {

// What an elevated process makes would otherwise be closed to the others. Everyone who is logged on
// may wait for and release a mutex (SYNCHRONIZE and MUTEX_MODIFY_STATE), and no more.
inline constexpr wchar_t kMutexAccess[] = L"D:(A;;0x00100001;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)";

// Everyone who is logged on may read and write the memory (SECTION_MAP_READ and SECTION_MAP_WRITE).
inline constexpr wchar_t kMemoryAccess[] = L"D:(A;;0x00000006;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)";

// An access list for objects that aren't inherited.
class CObjectAccess {
 public:
  explicit CObjectAccess(const wchar_t* access);
  ~CObjectAccess();
  CObjectAccess(const CObjectAccess&) = delete;
  CObjectAccess& operator=(const CObjectAccess&) = delete;

  // Null when it could not be made.
  [[nodiscard]] SECURITY_ATTRIBUTES* Get() {
    return attributes_.lpSecurityDescriptor == nullptr ? nullptr : &attributes_;
  }

 private:
  SECURITY_ATTRIBUTES attributes_ = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

// Makes or opens a mutex that everyone who is logged on may wait for and release. Null when it
// can't be had: one that shuts others out would be worse than none.
[[nodiscard]] HANDLE OpenSharedMutex(const wchar_t* name);

}  // namespace nhupdate
