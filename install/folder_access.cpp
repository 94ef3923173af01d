#include "install/folder_access.h"

#include <optional>
#include <string>

#include "base/current_folder.h"
#include "base/folder_making.h"
#include "base/folder_place.h"
#include "base/format.h"
#include "base/held_folder.h"
#include "base/known_folder.h"
#include "base/product_folders.h"
#include "base/windows.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr wchar_t kProgram[] = L"ICACLS.exe";
constexpr int kAccessDenied = SE_ERR_ACCESSDENIED;

// Whether the folder is looked for where it may well be missing, or was there a moment ago.
enum class Presence { kMayBeMissing, kWasThere };

// Starts the tool and returns the shell's return code, which is above 32 when that worked.
int StartTool(const std::wstring& parameters) {
  // The shell looks into the current folder first, and that may be anybody's.
  const CSystemFolderAsCurrent system_folder;
  if (!system_folder.IsCurrent()) {
    return kAccessDenied;
  }
  const HINSTANCE instance =
      ::ShellExecuteW(nullptr, nullptr, kProgram, parameters.c_str(), nullptr, SW_HIDE);
  // No instance at all but a return code, kept as a handle for the sake of 16-bit Windows.
  return static_cast<int>(reinterpret_cast<INT_PTR>(instance));
}

// The SID is that of the built-in Users group, whose name differs from language to language.
std::wstring ParametersFor(const std::wstring& folder) {
  return Format(L"\"%s\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e", folder);
}

void LogStart(const std::wstring& parameters, int return_code, const CLog& log) {
  constexpr int kLargestErrorCode = 32;
  if (return_code > kLargestErrorCode) {
    log.Write(LogLevel::kInformation,
              L"ShellExecute ICACLS success on %s, Params = %s, Return Code = %d", kProgram,
              parameters, return_code);
  } else {
    log.Write(LogLevel::kError, L"ShellExecute ICACLS fail on %s, Params = %s, Return Code = %d",
              kProgram, parameters, return_code);
  }
}

// Nobody is given access to what a link leads to. `anchor` is a folder above that only
// administrators can exchange. The folder stays in its place while the tool is started; the tool
// itself isn't waited for, so whoever owns the folder can still exchange it before the tool gets
// there.
void GrantUsersFullAccess(const std::wstring& folder, const std::wstring& anchor, Presence presence,
                          const CLog& log) {
  const std::wstring parameters = ParametersFor(folder);
  const CHeldFolder held(folder);
  const bool is_proven = held.IsMissing() ? presence == Presence::kMayBeMissing
                                          : held.IsPlainAt(PlaceSeenFrom(anchor, folder));
  LogStart(parameters, is_proven ? StartTool(parameters) : kAccessDenied, log);
}

Presence MakeFolderForAll(const std::wstring& folder) {
  return MakeFolder(folder) ? Presence::kWasThere : Presence::kMayBeMissing;
}

}  // namespace

void GrantFolderAccess(const ProductFolders& folders, const CLog& log) {
  const std::wstring configuration = folders.UpdaterFolder() + L"\\Config";
  const std::wstring temporary = folders.UpdaterFolder() + L"\\Temp";
  if (folders.HasBaseFolder()) {
    GrantUsersFullAccess(configuration, folders.base_folder, Presence::kMayBeMissing, log);
    GrantUsersFullAccess(temporary, folders.base_folder, MakeFolderForAll(temporary), log);
  } else {
    // These would be folders of whichever drive is the current one.
    LogStart(ParametersFor(configuration), kAccessDenied, log);
    LogStart(ParametersFor(temporary), kAccessDenied, log);
  }

  const std::optional<std::wstring> program_data = ProgramDataFolder();
  if (program_data) {
    const std::wstring data_folder = *program_data + L"\\Corvane";
    GrantUsersFullAccess(data_folder, *program_data, MakeFolderForAll(data_folder), log);
  } else {
    const std::wstring parameters = ParametersFor(L"");
    LogStart(parameters, StartTool(parameters), log);
  }
}

}  // namespace nhupdate
