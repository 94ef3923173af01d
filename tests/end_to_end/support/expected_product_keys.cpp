#include "tests/end_to_end/support/expected_product_keys.h"

#include "base/windows.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/support/product_keys.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

std::string Text(const std::wstring& key, const std::wstring& name, const std::wstring& data) {
  return ToUtf8(key + L"|" + name) + "|REG_SZ|" + StoredBytes(data.size()) + "|" + ToUtf8(data) +
         "\n";
}

std::string Two(const std::wstring& key, const std::wstring& name) {
  return ToUtf8(key + L"|" + name) + "|REG_DWORD|4|2\n";
}

std::wstring Today() {
  SYSTEMTIME now = {};
  ::GetLocalTime(&now);
  return std::to_wstring(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
}

}  // namespace

std::string ExpectedProductKeys(const CInstalledHub& hub) {
  const std::wstring uninstaller = hub.Module() + L"\\NHUninstaller\\NHUninstaller.exe";
  const std::wstring log_folder = hub.DataFolder() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log";
  return Text(kCollectLogKey, L"CorvaneNimbaHub",
              hub.Module() + L"\\NHCollectLog\\NHCollectLog.exe") +
         Text(kProductKey, L"AppPath", hub.Root()) +
         Text(kProductKey, L"UpdateManager", hub.Manager()) + Two(kDumpKey, L"DumpCount") +
         Text(kDumpKey, L"DumpFolder", log_folder) + Two(kDumpKey, L"DumpType") +
         Text(kUninstallKey, L"DisplayIcon", uninstaller) +
         Text(kUninstallKey, L"DisplayName", L"Nimba Hub") +
         Text(kUninstallKey, L"InstallDate", Today()) +
         Text(kUninstallKey, L"InstallLocation", hub.Root()) +
         Text(kUninstallKey, L"Publisher", L"Corvane") +
         Text(kUninstallKey, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall");
}

}  // namespace nhupdate_test
