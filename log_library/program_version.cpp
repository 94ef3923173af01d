#include "log_library/program_version.h"

#include <cstddef>
#include <cstring>

#include "base/windows.h"

// This needs <windows.h> first.
#include <winver.h>

namespace nhupdate {

namespace {

// The resource begins with three numbers of 16 bits and its name, "VS_VERSION_INFO"; what follows
// is aligned to 32 bits.
constexpr std::size_t kFixedPartOffset = 40;

// Read from the executable as it lies in memory. The functions for version resources would load
// another DLL and open the file again, which may have been exchanged for the next version.
bool ReadFixedPart(VS_FIXEDFILEINFO& information) {
  const HRSRC resource = ::FindResourceW(nullptr, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  if (resource == nullptr ||
      ::SizeofResource(nullptr, resource) < kFixedPartOffset + sizeof(information)) {
    return false;
  }
  const auto* bytes =
      static_cast<const std::byte*>(::LockResource(::LoadResource(nullptr, resource)));
  if (bytes == nullptr) {
    return false;
  }
  std::memcpy(&information, bytes + kFixedPartOffset, sizeof(information));
  return information.dwSignature == VS_FFI_SIGNATURE;
}

}  // namespace

std::wstring ProgramVersion() {
  VS_FIXEDFILEINFO information = {};
  if (!ReadFixedPart(information)) {
    return L"unknown";
  }
  std::wstring version = std::to_wstring(HIWORD(information.dwFileVersionMS)) + L"." +
                         std::to_wstring(LOWORD(information.dwFileVersionMS)) + L"." +
                         std::to_wstring(HIWORD(information.dwFileVersionLS));
  if (const WORD fourth = LOWORD(information.dwFileVersionLS); fourth != 0) {
    version += L"." + std::to_wstring(fourth);
  }
  return version;
}

}  // namespace nhupdate
