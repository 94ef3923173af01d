#pragma once

// A kernel object's handle, closed by whoever owns it; nullptr for none.

#include <memory>

#include "windows_api.h"

namespace nimba_hub {

struct HandleCloser {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

using OwnedHandle = std::unique_ptr<void, HandleCloser>;

// For functions that say "none" with another value.
[[nodiscard]] inline OwnedHandle OwnFile(HANDLE file) {
  return OwnedHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

}  // namespace nimba_hub
