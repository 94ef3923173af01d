#pragma once

// Windows as it is unless an administrator has allowed long paths: for as long as the object lives
// a path of MAX_PATH units and more that hasn't the prefix of the extended-length form is taken for
// one that isn't there.

#include <string_view>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class ShortPathPolicy {
 private:
  static bool Refuses(const wchar_t* path) {
    const std::wstring_view text = path;
    const bool is_refused = text.size() >= MAX_PATH && !text.starts_with(L"\\\\?\\");
    if (is_refused) {
      ::SetLastError(ERROR_PATH_NOT_FOUND);
    }
    return is_refused;
  }

  INTERPOSER(CreateFileW) create_file_{[this](const wchar_t* path, DWORD access, DWORD sharing,
                                              SECURITY_ATTRIBUTES* security, DWORD disposition,
                                              DWORD flags, HANDLE model) {
    return Refuses(path) ? INVALID_HANDLE_VALUE
                         : create_file_.Original()(path, access, sharing, security, disposition,
                                                   flags, model);
  }};
  INTERPOSER(FindFirstFileW) find_first_{[this](const wchar_t* path, WIN32_FIND_DATAW* entry) {
    return Refuses(path) ? INVALID_HANDLE_VALUE : find_first_.Original()(path, entry);
  }};
  INTERPOSER(GetFileAttributesW) attributes_{[this](const wchar_t* path) {
    return Refuses(path) ? INVALID_FILE_ATTRIBUTES : attributes_.Original()(path);
  }};
};

}  // namespace nhupdate_test
