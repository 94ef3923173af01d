#include "tests/stand_ins/support/own_start.h"

#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/stand_ins/support/journal.h"

#include <tlhelp32.h>  // needs <windows.h> first

namespace nhupdate_stand_in {

namespace {

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

std::wstring OwnFolder() {
  return nhupdate::ParentFolder(OwnPath());
}

void RecordOwnStart() {
  const DWORD parent_id = FindProcess(::GetCurrentProcessId()).parent_id;
  Journal journal(L"NHUPDATE_CHILD_JOURNAL");
  journal.Append({OwnPath(), WorkingFolder(), ShowState(), std::to_wstring(parent_id),
                  FindProcess(parent_id).name, ::GetCommandLineW()});
}

}  // namespace nhupdate_stand_in
