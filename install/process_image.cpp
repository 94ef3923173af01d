#include "install/process_image.h"

#include <array>

#include "base/paths.h"
#include "base/unique_handle.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr DWORD kImagePathUnits = 260;

}  // namespace

bool GetProcessImageName(DWORD process_id, std::wstring& name, std::wstring& path) {
  const UniqueKernelHandle process(
      ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process_id));
  if (!process.IsValid()) {
    return false;
  }
  // One unit more than Windows may fill, which stays a terminator.
  std::array<wchar_t, kImagePathUnits + 1> path_buffer = {};
  DWORD units = kImagePathUnits;
  if (::QueryFullProcessImageNameW(process.Get(), 0, path_buffer.data(), &units)) {
    path = path_buffer.data();
    name = FileName(path);
    return true;
  }

  // A process that is just starting or ending often gives its path to one of these.
  if (::K32GetModuleFileNameExW(process.Get(), nullptr, path_buffer.data(), kImagePathUnits) == 0) {
    ::K32GetProcessImageFileNameW(process.Get(), path_buffer.data(), kImagePathUnits);
  }
  path = path_buffer.data();
  std::array<wchar_t, kImagePathUnits + 1> name_buffer = {};
  const DWORD name_length =
      ::K32GetModuleBaseNameW(process.Get(), nullptr, name_buffer.data(), kImagePathUnits);
  name = name_length != 0 ? name_buffer.data() : FileName(path);
  return true;
}

}  // namespace nhupdate
