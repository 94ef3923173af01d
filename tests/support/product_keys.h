#pragma once

// The registry keys below HKEY_LOCAL_MACHINE into which the program writes.

namespace nhupdate_test {

inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\WOW6432Node\\CorvaneNimbaHub";
inline constexpr wchar_t kCollectLogKey[] = L"SOFTWARE\\WOW6432Node\\CorvaneNimba\\NimbaCollectLog";
inline constexpr wchar_t kDumpKey[] =
    L"SOFTWARE\\Microsoft\\Windows\\Windows Error Reporting\\LocalDumps\\NHUpdateManager.exe";
inline constexpr wchar_t kUninstallKey[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\NIMBA HUB";

}  // namespace nhupdate_test
