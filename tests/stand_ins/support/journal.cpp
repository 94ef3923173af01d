#include "tests/stand_ins/support/journal.h"

#include <cstddef>

#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"

#include <tlhelp32.h>  // needs <windows.h> first

namespace nhupdate_stand_in {

namespace {

constexpr std::size_t kLongestPath = 32767;

std::wstring Printable(std::wstring text) {
  for (wchar_t& unit : text) {
    if (unit == L'\n') {
      unit = L'\u240A';
    } else if (unit == L'\r') {
      unit = L'\u240D';
    } else if (unit == L'\t') {
      unit = L'\u2409';
    }
  }
  return text;
}

std::string ToUtf8(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::wstring OwnPath() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

std::wstring WorkingFolder() {
  std::wstring folder(kLongestPath, L'\0');
  folder.resize(::GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
  return folder;
}

std::wstring ShowState() {
  STARTUPINFOW startup = {};
  ::GetStartupInfoW(&startup);
  return (startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? std::to_wstring(startup.wShowWindow)
                                                       : L"-";
}

struct Process {
  DWORD parent_id = 0;
  std::wstring name;
};

Process FindProcess(DWORD id) {
  const nhupdate::UniqueFile snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = ::Process32FirstW(snapshot.Get(), &entry); more;
       more = ::Process32NextW(snapshot.Get(), &entry)) {
    if (entry.th32ProcessID == id) {
      return {entry.th32ParentProcessID, entry.szExeFile};
    }
  }
  return {};
}

}  // namespace

std::wstring EnvironmentVariable(const wchar_t* name) {
  std::wstring value(kLongestPath, L'\0');
  value.resize(::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

void AppendToJournal(const wchar_t* path_variable, const std::vector<std::wstring>& fields) {
  const std::wstring path = EnvironmentVariable(path_variable);
  if (path.empty()) {
    return;
  }
  std::wstring line = std::to_wstring(::GetCurrentProcessId());
  for (const std::wstring& field : fields) {
    line += L'\t';
    line += Printable(field);
  }
  const std::string bytes = ToUtf8(line + L"\n");
  const nhupdate::UniqueFile journal(::CreateFileW(
      path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  ::WriteFile(journal.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

std::wstring OwnFolder() {
  return nhupdate::ParentFolder(OwnPath());
}

void RecordOwnStart() {
  const DWORD parent_id = FindProcess(::GetCurrentProcessId()).parent_id;
  AppendToJournal(L"NHUPDATE_CHILD_JOURNAL",
                  {OwnPath(), WorkingFolder(), ShowState(), std::to_wstring(parent_id),
                   FindProcess(parent_id).name, ::GetCommandLineW()});
}

}  // namespace nhupdate_stand_in
