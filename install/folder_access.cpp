#include "install/folder_access.h"

#include "base/current_folder.h"
#include "base/held_folder.h"
#include "base/known_folder.h"
#include "base/product_folders.h"
#include "base/windows.h"
#include "base/windows_path.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr wchar_t kProgram[] = L"ICACLS.exe";

// Starts the tool and returns the shell's return code, which is above 32 when that worked.
int StartTool(const std::wstring& parameters) {
  // The shell looks into the current folder first, and that may be anybody's.
  const CSystemFolderAsCurrent current_folder;
  const HINSTANCE instance =
      ::ShellExecuteW(nullptr, nullptr, kProgram, parameters.c_str(), nullptr, SW_HIDE);
  // No instance at all but a return code, kept as a handle for the sake of 16-bit Windows.
  return static_cast<int>(reinterpret_cast<INT_PTR>(instance));
}

// Nobody is given access to what a link leads to. `anchor` is a folder above that only
// administrators can write to. The folder stays in its place while the tool is started; the tool
// itself isn't waited for, so whoever owns the folder can still exchange it before the tool gets
// there.
void GrantUsersFullAccess(const std::wstring& folder, const std::wstring& anchor, const CLog& log) {
  // The SID is that of the built-in Users group, whose name differs from language to language.
  const std::wstring parameters =
      Format(L"\"%s\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e", folder);
  const CHeldFolder held(folder);
  const bool may_be_link =
      !folder.empty() && !held.IsMissing() && !held.IsPlainAt(PlaceSeenFrom(anchor, folder));
  constexpr int kAccessDenied = SE_ERR_ACCESSDENIED;
  constexpr int kLargestErrorCode = 32;
  const int return_code = may_be_link ? kAccessDenied : StartTool(parameters);
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
  GrantUsersFullAccess(updater_folder + L"\\Config", base_folder, log);

  const std::wstring temporary_folder = updater_folder + L"\\Temp";
  ::CreateDirectoryW(PathForWindows(temporary_folder).c_str(), nullptr);  // may be there already
  GrantUsersFullAccess(temporary_folder, base_folder, log);

  const std::wstring program_data = ProgramDataFolder().value_or(std::wstring());
  std::wstring data_folder;
  if (!program_data.empty()) {
    data_folder = program_data + L"\\Corvane";
    ::CreateDirectoryW(PathForWindows(data_folder).c_str(), nullptr);  // may be there already
  }
  GrantUsersFullAccess(data_folder, program_data, log);
}

}  // namespace nhupdate
