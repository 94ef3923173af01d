#pragma once

// Who may do what with an object, as text.

#include <string>

#include "base/windows.h"

// This needs <windows.h> first.
#include <sddl.h>

namespace nhupdate_test {

// The access list of a security descriptor. Rights that have letters for other objects are written
// in these.
[[nodiscard]] inline std::wstring AccessText(void* descriptor) {
  wchar_t* text = nullptr;
  if (!::ConvertSecurityDescriptorToStringSecurityDescriptorW(
          descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
    return L"none";
  }
  const std::wstring copy = text;
  ::LocalFree(text);
  return copy;
}

}  // namespace nhupdate_test
