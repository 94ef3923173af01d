#pragma once

// The calls by which the fence is tested.

#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/interposer.h"
#include "tests/support/log_journal.h"

// These need <windows.h> first.
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {

// A text that can be passed to Windows as it is.
struct Argument : std::wstring {
  using std::wstring::wstring;
  Argument(std::wstring text) : std::wstring(std::move(text)) {}
  operator const wchar_t*() const { return c_str(); }
};

// What the calls are aimed at. A test chooses whether `place`, `key` (below HKEY_CURRENT_USER),
// `program` and `process` are inside or outside; `scratch` is inside.
struct Aim {
  Argument place;
  Argument scratch;
  Argument key;
  Argument program;
  DWORD process;

  Argument file = place + L"\\file";
  Argument file_literally = L"\\\\?\\" + file;
  Argument file_roundabout = scratch + L"\\.." + place.substr(place.rfind(L'\\')) + L"/file";
  Argument file_far = place + L"\\" + std::wstring(2 * MAX_PATH, L'x');
  Argument fresh = place + L"\\new";
  Argument scratch_file = scratch + L"\\file";
  Argument scratch_fresh = scratch + L"\\new";
  Argument fresh_key = key + L"\\new";
};

inline nhupdate::UniqueFile OpenFile(const wchar_t* path, DWORD access, DWORD disposition) {
  return nhupdate::UniqueFile(::CreateFileW(path, access,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

inline void Rename(const wchar_t* from, const std::wstring& to) {
  const nhupdate::UniqueFile file = OpenFile(from, DELETE, OPEN_EXISTING);
  FILE_RENAME_INFO rename = {};
  rename.FileNameLength = static_cast<DWORD>(to.size() * sizeof(wchar_t));
  std::vector<std::byte> buffer(sizeof(rename) + rename.FileNameLength);
  std::memcpy(buffer.data(), &rename, sizeof(rename));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), to.c_str(),
              rename.FileNameLength);
  ::SetFileInformationByHandle(file.Get(), FileRenameInfo, buffer.data(),
                               static_cast<DWORD>(buffer.size()));
}

inline nhupdate::UniqueRegistryKey CreateKey(HKEY hive, const wchar_t* path) {
  nhupdate::UniqueRegistryKey key;
  ::RegCreateKeyExW(hive, path, 0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE, nullptr,
                    key.Receive(), nullptr);
  return key;
}

inline nhupdate::UniqueRegistryKey OpenKey(const wchar_t* path, REGSAM access) {
  nhupdate::UniqueRegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, access, key.Receive());
  return key;
}

// A process that a test has started is inside, so ending it is allowed.
inline void EndStarted(HANDLE process) {
  ::TerminateProcess(process, 0);
  ::CloseHandle(process);
}

inline void StartProcess(const wchar_t* program, wchar_t* command_line) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (::CreateProcessW(program, command_line, nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                       nullptr, &startup, &information)) {
    EndStarted(information.hProcess);
    ::CloseHandle(information.hThread);
  }
}

inline void Execute(const wchar_t* program) {
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  execution.lpFile = program;
  if (::ShellExecuteExW(&execution) && execution.hProcess != nullptr) {
    EndStarted(execution.hProcess);
  }
}

// Lets a library write a line into this file.
inline void CallLibrary(const wchar_t* journal) {
  ::SetEnvironmentVariableW(kLogJournalVariable, journal);
  const HMODULE library = ::LoadLibraryW(L"recording_log.dll");
  reinterpret_cast<void (*)()>(::GetProcAddress(library, "Stop"))();
}

struct Trespass {
  // The function's name, and after a comma what is special about the call.
  const wchar_t* call;
  void (*make)(const Aim& aim);
};

// These calls are inside or outside as their aim is.
inline const std::vector<Trespass> kPlacedCalls = {
    {L"CreateDirectoryW", [](const Aim& a) { ::CreateDirectoryW(a.fresh, nullptr); }},
    {L"RemoveDirectoryW", [](const Aim& a) { ::RemoveDirectoryW(a.fresh); }},
    {L"DeleteFileW", [](const Aim& a) { ::DeleteFileW(a.file); }},
    {L"DeleteFileW, literal", [](const Aim& a) { ::DeleteFileW(a.file_literally); }},
    {L"DeleteFileW, roundabout", [](const Aim& a) { ::DeleteFileW(a.file_roundabout); }},
    {L"DeleteFileW, long", [](const Aim& a) { ::DeleteFileW(a.file_far); }},
    {L"DeleteFileW, faked",
     [](const Aim& a) {
       INTERPOSER(DeleteFileW) fake([](const wchar_t*) {});
       ::DeleteFileW(a.file);
     }},
    {L"SetFileAttributesW",
     [](const Aim& a) { ::SetFileAttributesW(a.file, FILE_ATTRIBUTE_HIDDEN); }},
    {L"CopyFileW", [](const Aim& a) { ::CopyFileW(a.scratch_file, a.fresh, FALSE); }},
    {L"MoveFileW, from", [](const Aim& a) { ::MoveFileW(a.file, a.scratch_fresh); }},
    {L"MoveFileW, to", [](const Aim& a) { ::MoveFileW(a.scratch_file, a.fresh); }},
    {L"CreateFileW, to write",
     [](const Aim& a) { OpenFile(a.file, GENERIC_WRITE, OPEN_EXISTING); }},
    {L"CreateFileW, to append",
     [](const Aim& a) { OpenFile(a.file, FILE_APPEND_DATA, OPEN_EXISTING); }},
    {L"CreateFileW, to rename", [](const Aim& a) { OpenFile(a.file, DELETE, OPEN_EXISTING); }},
    {L"CreateFileW, to create", [](const Aim& a) { OpenFile(a.fresh, GENERIC_READ, OPEN_ALWAYS); }},
    {L"SetFileInformationByHandle", [](const Aim& a) { Rename(a.scratch_file, a.fresh); }},
    {L"CreateHardLinkW", [](const Aim& a) { ::CreateHardLinkW(a.scratch_fresh, a.file, nullptr); }},
    {L"CreateSymbolicLinkW",
     [](const Aim& a) {
       ::CreateSymbolicLinkW(a.scratch_fresh, a.place, SYMBOLIC_LINK_FLAG_DIRECTORY);
     }},
    {L"WritePrivateProfileStringW",
     [](const Aim& a) { ::WritePrivateProfileStringW(L"a", L"b", L"c", a.fresh); }},
    {L"SHCreateDirectoryExW",
     [](const Aim& a) { ::SHCreateDirectoryExW(nullptr, a.fresh, nullptr); }},
    {L"RegCreateKeyExW", [](const Aim& a) { CreateKey(HKEY_CURRENT_USER, a.fresh_key); }},
    {L"RegCreateKeyExW, redirected",
     [](const Aim& a) {
       const nhupdate::UniqueRegistryKey key = OpenKey(a.key, KEY_ALL_ACCESS);
       ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key.Get());
       CreateKey(HKEY_LOCAL_MACHINE, L"new");
     }},
    {L"RegSetValueExW",
     [](const Aim& a) {
       const nhupdate::UniqueRegistryKey key = OpenKey(a.key, KEY_SET_VALUE);
       ::RegSetValueExW(key.Get(), L"new", 0, REG_SZ, nullptr, 0);
     }},
    {L"RegSetKeyValueW",
     [](const Aim& a) { ::RegSetKeyValueW(HKEY_CURRENT_USER, a.key, L"new", REG_SZ, L"", 2); }},
    {L"RegDeleteTreeW", [](const Aim& a) { ::RegDeleteTreeW(HKEY_CURRENT_USER, a.key); }},
    {L"CreateProcessW", [](const Aim& a) { StartProcess(a.program, nullptr); }},
    {L"CreateProcessW, in one text",
     [](const Aim& a) {
       Argument command_line = L"\"" + a.program + L"\" x";
       StartProcess(nullptr, command_line.data());
     }},
    {L"ShellExecuteExW", [](const Aim& a) { Execute(a.program); }},
    {L"OpenProcess", [](const Aim& a) { ::OpenProcess(PROCESS_TERMINATE, FALSE, a.process); }},
    // The handle has no right to end the process, which so survives even without a fence.
    {L"TerminateProcess",
     [](const Aim& a) {
       ::TerminateProcess(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, a.process), 1);
     }},
    {L"the library's CreateFileW", [](const Aim& a) { CallLibrary(a.fresh); }},
};

// These calls are outside whatever their aim is.
inline const std::vector<Trespass> kOutsideCalls = {
    {L"RegCreateKeyExW, machine", [](const Aim& a) { CreateKey(HKEY_LOCAL_MACHINE, a.key); }},
    {L"WritePrivateProfileStringW, mere name",
     [](const Aim&) {
       ::WritePrivateProfileStringW(L"a", L"b", L"c", L"nhupdate_fence_test.ini");
     }},
    {L"ShellExecuteW, searched",
     [](const Aim&) {
       ::ShellExecuteW(nullptr, nullptr, L"nhupdate_no_such.exe", nullptr, nullptr, SW_HIDE);
     }},
    {L"MessageBoxW", [](const Aim&) { ::MessageBoxW(nullptr, L"text", L"caption", MB_OK); }},
};

// These calls only read, and so the fence lets them through everywhere.
inline const std::vector<Trespass> kReadingCalls = {
    {L"CreateFileW, to read", [](const Aim& a) { OpenFile(a.file, GENERIC_READ, OPEN_EXISTING); }},
    {L"CopyFileW, from", [](const Aim& a) { ::CopyFileW(a.file, a.scratch_fresh, FALSE); }},
    {L"RegOpenKeyExW", [](const Aim& a) { OpenKey(a.key, KEY_READ); }},
    {L"OpenProcess, to look",
     [](const Aim& a) { ::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, a.process); }},
};

}  // namespace nhupdate_test
