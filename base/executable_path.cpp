#include "base/executable_path.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/windows.h"

namespace nhupdate {

std::wstring ExecutablePath() {
  std::array<wchar_t, MAX_PATH> buffer = {};
  const DWORD length =
      ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
  return std::wstring(buffer.data(), std::min<std::size_t>(length, buffer.size() - 1));
}

}  // namespace nhupdate
