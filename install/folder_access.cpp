#include "install/folder_access.h"

#include <optional>

#include "base/known_folder.h"
#include "base/product_folders.h"
#include "base/windows.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

void GrantUsersFullAccess(const std::wstring& folder, const CLog& log) {
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
    log.Write(LogLevel::kInformation,
              L"ShellExecute ICACLS success on %s, Params = %s, Return Code = %d", kProgram,
              parameters, return_code);
  } else {
    log.Write(LogLevel::kError, L"ShellExecute ICACLS fail on %s, Params = %s, Return Code = %d",
              kProgram, parameters, return_code);
  }
}

}  // namespace

void GrantFolderAccess(const std::wstring& base_folder, const CLog& log) {
  const std::wstring updater_folder = ProductFolders::UpdaterFolderOf(base_folder);
  GrantUsersFullAccess(updater_folder + L"\\Config", log);

  const std::wstring temporary_folder = updater_folder + L"\\Temp";
  ::CreateDirectoryW(temporary_folder.c_str(), nullptr);  // may be there already
  GrantUsersFullAccess(temporary_folder, log);

  std::wstring data_folder;
  const std::optional<std::wstring> program_data = ProgramDataFolder();
  if (program_data) {
    data_folder = *program_data + L"\\Corvane";
    ::CreateDirectoryW(data_folder.c_str(), nullptr);  // may be there already
  }
  GrantUsersFullAccess(data_folder, log);
}

}  // namespace nhupdate
