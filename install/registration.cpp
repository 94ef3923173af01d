#include <cstdint>
#include <initializer_list>
#include <string>
#include <tuple>
#include <variant>

#include "app/manager_center.h"
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

int CManagerCenter::RegisterProduct() {
  const std::wstring manager_folder = paths_.base_folder + L"\\NHUpdateManager";
  Write({
      {kProductKey, L"AppPath", paths_.root_folder},
      {kProductKey, L"UpdateManager", manager_folder + L"\\NHUpdateManager.exe"},
  });
  Log(LogLevel::kInformation, L"Nimba Hub registry set.");

  Write({
      {kCollectLogKey, L"CorvaneNimbaHub",
       paths_.module_folder + L"\\NHCollectLog\\NHCollectLog.exe"},
      {kCrashDumpKey, L"DumpFolder", paths_.log_folder},
      {kCrashDumpKey, L"DumpCount", kDumpsKept},
      {kCrashDumpKey, L"DumpType", kFullDump},
  });
  LogText(LogLevel::kInformation,
          L"NHUpdateManager crash dump folder set to : " + paths_.log_folder);

  const std::wstring uninstaller = manager_folder + L"\\NHUninstaller\\NHUninstaller.exe";
  Write({
      {kUninstallKey, L"DisplayName", L"Nimba Hub"},
      {kUninstallKey, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall"},
      {kUninstallKey, L"DisplayIcon", uninstaller},
      {kUninstallKey, L"Publisher", L"Corvane"},
      {kUninstallKey, L"InstallLocation", paths_.root_folder},
  });
  Write({{kUninstallKey, L"InstallDate", Today()}});
  return 1;
}

}  // namespace nhupdate
