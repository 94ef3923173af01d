#include "install/registration.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <tuple>
#include <variant>

#include "base/format.h"
#include "base/registry.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

constexpr wchar_t kProductKey[] = L"SOFTWARE\\WOW6432Node\\CorvaneNimbaHub";
constexpr wchar_t kCollectLogKey[] = L"SOFTWARE\\WOW6432Node\\CorvaneNimba\\NimbaCollectLog";
constexpr wchar_t kCrashDumpKey[] =
    L"SOFTWARE\\Microsoft\\Windows\\Windows Error Reporting\\LocalDumps\\NHUpdateManager.exe";
constexpr wchar_t kUninstallKey[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\NIMBA HUB";

constexpr std::uint32_t kDumpsKept = 2;
constexpr std::uint32_t kFullDump = 2;

struct RegistryRow {
  const wchar_t* key;
  const wchar_t* name;
  std::variant<std::wstring, std::uint32_t> data;
};

void Write(std::initializer_list<RegistryRow> rows) {
  for (const RegistryRow& row : rows) {
    if (const std::wstring* text = std::get_if<std::wstring>(&row.data)) {
      std::ignore = SetRegString(row.key, row.name, *text);  // no row depends on another
    } else {
      std::ignore = SetRegDword(row.key, row.name, std::get<std::uint32_t>(row.data));  // as above
    }
  }
}

// The local date, such as 20270301.
std::wstring Today() {
  SYSTEMTIME now = {};
  ::GetLocalTime(&now);
  return Format(L"%d%02d%02d", int{now.wYear}, int{now.wMonth}, int{now.wDay});
}

}  // namespace

bool RegisterProduct(const ProductFolders& folders, const CLog& log) {
  const std::wstring manager_folder = folders.base_folder + kProgramFolder;
  Write({
      {kProductKey, L"AppPath", folders.root_folder},
      {kProductKey, L"UpdateManager", manager_folder + L"\\" + kProgramFileName},
  });
  log.Write(LogLevel::kInformation, L"Nimba Hub registry set.");

  Write({
      {kCollectLogKey, L"CorvaneNimbaHub",
       folders.module_folder + L"\\NHCollectLog\\NHCollectLog.exe"},
      {kCrashDumpKey, L"DumpFolder", folders.log_folder},
      {kCrashDumpKey, L"DumpCount", kDumpsKept},
      {kCrashDumpKey, L"DumpType", kFullDump},
  });
  log.WriteText(LogLevel::kInformation,
                L"NHUpdateManager crash dump folder set to : " + folders.log_folder);

  const std::wstring uninstaller = manager_folder + L"\\NHUninstaller\\NHUninstaller.exe";
  Write({
      {kUninstallKey, L"DisplayName", L"Nimba Hub"},
      {kUninstallKey, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall"},
      {kUninstallKey, L"DisplayIcon", uninstaller},
      {kUninstallKey, L"Publisher", L"Corvane"},
      {kUninstallKey, L"InstallLocation", folders.root_folder},
  });
  Write({{kUninstallKey, L"InstallDate", Today()}});
  return true;
}

}  // namespace nhupdate
