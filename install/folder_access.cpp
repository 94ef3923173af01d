#include <optional>
#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "base/known_folder.h"
#include "base/windows.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

void CManagerCenter::GrantFolderAccess() {
  GrantUsersFullAccess(paths_.base_folder + L"\\Updater\\Config");

  const std::wstring temporary_folder = paths_.base_folder + L"\\Updater\\Temp";
  std::ignore = ::CreateDirectoryW(temporary_folder.c_str(), nullptr);  // may be there already
  GrantUsersFullAccess(temporary_folder);

  std::wstring data_folder;
  const std::optional<std::wstring> program_data = ProgramDataFolder();
  if (program_data) {
    data_folder = *program_data + L"\\Corvane";
    std::ignore = ::CreateDirectoryW(data_folder.c_str(), nullptr);  // may be there already
  }
  GrantUsersFullAccess(data_folder);
}

void CManagerCenter::GrantUsersFullAccess(const std::wstring& folder) {
  constexpr wchar_t kProgram[] = L"ICACLS.exe";
  // The SID is that of the built-in Users group, whose name differs from language to language.
  const std::wstring parameters =
      Format(L"\"%s\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e", folder);
  const HINSTANCE instance =
      ::ShellExecuteW(nullptr, nullptr, kProgram, parameters.c_str(), nullptr, SW_HIDE);

  // No instance at all but a return code, kept as a handle for the sake of 16-bit Windows.
  constexpr int kLargestErrorCode = 32;
  const int return_code = static_cast<int>(reinterpret_cast<INT_PTR>(instance));
  if (return_code > kLargestErrorCode) {
    Log(LogLevel::kInformation, L"ShellExecute ICACLS success on %s, Params = %s, Return Code = %d",
        kProgram, parameters, return_code);
  } else {
    Log(LogLevel::kError, L"ShellExecute ICACLS fail on %s, Params = %s, Return Code = %d",
        kProgram, parameters, return_code);
  }
}

}  // namespace nhupdate
