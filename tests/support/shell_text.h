#pragma once

// Texts as the shell hands them out.

#include <string>

#include "base/windows.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {

// A copy that whoever gets it frees with CoTaskMemFree.
[[nodiscard]] inline PWSTR CopyForShell(const std::wstring& text) {
  auto* copy = static_cast<wchar_t*>(::CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
  text.copy(copy, text.size());
  copy[text.size()] = L'\0';
  return copy;
}

}  // namespace nhupdate_test
