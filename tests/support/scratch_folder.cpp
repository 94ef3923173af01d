#include "tests/support/scratch_folder.h"

#include <array>
#include <cstdint>

#include "base/windows.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

// Of the system's clock.
std::uint64_t CurrentMilliseconds() {
  constexpr std::uint64_t kFileTimeUnitsPerMs = 10'000;
  FILETIME now = {};
  ::GetSystemTimeAsFileTime(&now);
  return ((std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime) / kFileTimeUnitsPerMs;
}

// A name that was never used before. The process id would not do: Windows gives it away again, and
// what an earlier process has deleted keeps its name until the last handle to it is closed.
std::wstring UnusedName() {
  static const std::uint64_t process_start = CurrentMilliseconds();
  static int count = 0;
  return L"nhupdate Pr\u00FCfung 100%s " + std::to_wstring(process_start) + L"-" +
         std::to_wstring(++count);
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::array<wchar_t, MAX_PATH> temporary = {};
  ::GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
  path_ = temporary.data() + UnusedName();
  CreateFolders(path_);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(path_);
}

}  // namespace nhupdate_test
