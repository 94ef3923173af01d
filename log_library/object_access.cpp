#include "log_library/object_access.h"

// This needs <windows.h> first.
#include <sddl.h>

namespace nhupdate {

CObjectAccess::CObjectAccess(const wchar_t* access) {
  if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(
          access, SDDL_REVISION_1, &attributes_.lpSecurityDescriptor, nullptr)) {
    attributes_.lpSecurityDescriptor = nullptr;
  }
}

CObjectAccess::~CObjectAccess() {
  ::LocalFree(attributes_.lpSecurityDescriptor);  // nothing could be done about a failure
}

HANDLE OpenSharedMutex(const wchar_t* name) {
  CObjectAccess access(kMutexAccess);
  return access.Get() == nullptr
             ? nullptr
             : ::CreateMutexExW(access.Get(), name, 0, SYNCHRONIZE | MUTEX_MODIFY_STATE);
}

}  // namespace nhupdate
