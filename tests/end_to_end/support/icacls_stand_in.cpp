#include "tests/end_to_end/support/icacls_stand_in.h"

#include <string>

#include "base/windows.h"
#include "tests/end_to_end/support/copied_files.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

// The tool is deleted first: in a prefix it may be shared with other prefixes.
bool Replace() {
  const std::wstring tool = L"C:\\windows\\system32\\icacls.exe";
  ::SetFileAttributesW(tool.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::DeleteFileW(tool.c_str());
  CopyOver(TestProgramFolder() + L"\\recording_icacls.exe", tool);
  // Wine takes a tool of its own unless it is told not to.
  constexpr wchar_t kNative[] = L"native";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Wine\\DllOverrides", L"icacls.exe", REG_SZ,
                    kNative, sizeof(kNative));
  return true;
}

}  // namespace

void ReplaceIcacls() {
  [[maybe_unused]] static const bool is_replaced = Replace();
}

}  // namespace nhupdate_test
