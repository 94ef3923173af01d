#include "log_library/header_record.h"

#include "base/windows.h"
#include "log_library/program_version.h"
#include "log_library/record_time.h"

namespace nhupdate {

namespace {

std::wstring Widen(std::string_view text) {
  std::wstring wide;
  for (const char character : text) {
    // A byte outside ASCII is negative as a char and would become a character from U+FF80 on.
    wide += static_cast<wchar_t>(static_cast<unsigned char>(character));
  }
  return wide;
}

std::wstring ExecutablePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD units = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (units < path.size()) {
      path.resize(units);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

// The true one: the documented way tells a program only of the versions that its manifest knows.
std::wstring WindowsVersion() {
  using GetVersionEntry = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto get_version = reinterpret_cast<GetVersionEntry>(reinterpret_cast<void (*)()>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  if (get_version == nullptr || get_version(&version) != 0) {
    return L"of unknown version";
  }
  return std::to_wstring(version.dwMajorVersion) + L"." + std::to_wstring(version.dwMinorVersion) +
         L"." + std::to_wstring(version.dwBuildNumber);
}

std::wstring TimeZone() {
  DYNAMIC_TIME_ZONE_INFORMATION zone = {};
  ::GetDynamicTimeZoneInformation(&zone);  // without it the name stays empty
  return std::wstring(zone.TimeZoneKeyName) + L" (UTC" +
         Widen(FormatUtcOffset(CurrentRecordTime().utc_offset_minutes)) + L")";
}

}  // namespace

std::wstring HeaderText(std::string_view interface_version) {
  return L"Log library " + Widen(NHUPDATE_LOG_LIBRARY_VERSION) + L", program version " +
         ProgramVersion() + L", interface version " + Widen(interface_version) + L", executable " +
         ExecutablePath() + L", Windows " + WindowsVersion() + L", time zone " + TimeZone();
}

}  // namespace nhupdate
