#pragma once

// The plainest fake for INTERPOSER: whatever the function is asked, it answers the same. The types
// of its parameters needn't be written out for that:
//
//   INTERPOSER(CreateFileW) open(Answers(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
//
// A fake that looks at the first parameters only takes the others as `auto... rest`.

#include "base/windows.h"

namespace nhupdate_test {

// Sets the last error too.
template <typename Result>
[[nodiscard]] auto Answers(Result result, DWORD error = ERROR_SUCCESS) {
  return [result, error](const auto&...) {
    ::SetLastError(error);
    return result;
  };
}

}  // namespace nhupdate_test
