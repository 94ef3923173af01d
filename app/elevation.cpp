#include "app/elevation.h"

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

bool IsProcessElevated() {
  UniqueKernelHandle token;
  if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, token.Receive())) {
    return false;
  }
  TOKEN_ELEVATION elevation = {};
  DWORD size = 0;
  if (!::GetTokenInformation(token.Get(), TokenElevation, &elevation, sizeof(elevation), &size)) {
    return false;
  }
  return elevation.TokenIsElevated != 0;
}

}  // namespace nhupdate
