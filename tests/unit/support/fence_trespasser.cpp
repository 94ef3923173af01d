// Makes one call behind the fence: fence_trespasser REACH CALL PLACE SCRATCH KEY PROGRAM PROCESS
//
// PLACE is a folder with a file in it and KEY a key below HKEY_CURRENT_USER, both inside or outside
// as the test wants it, as are PROGRAM and the id PROCESS (0 is the trespasser itself). SCRATCH is
// always inside. REACH is "scratch", "prefix", "opened" for an open fence, or
// "kept" for one that is to be opened on a machine that nobody wants to lose. The process ends with
// 0 when the call came through, whatever it returned.

#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/fence.h"
#include "tests/support/interposer.h"
#include "tests/support/log_journal.h"
#include "tests/support/other_than_wine.h"

// These need <windows.h> first.
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

struct Aim {
  std::wstring place;
  std::wstring scratch;
  std::wstring key;
  std::wstring program;
  DWORD process = 0;

  [[nodiscard]] std::wstring File() const { return place + L"\\file"; }
  [[nodiscard]] std::wstring New() const { return place + L"\\new"; }
};

nhupdate::UniqueFile Open(const std::wstring& path, DWORD access, DWORD disposition,
                          DWORD flags = FILE_ATTRIBUTE_NORMAL) {
  return nhupdate::UniqueFile(::CreateFileW(path.c_str(), access,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, disposition, flags, nullptr));
}

void Rename(const std::wstring& from, const std::wstring& to) {
  const nhupdate::UniqueFile file = Open(from, DELETE, CREATE_ALWAYS);
  FILE_RENAME_INFO rename = {};
  rename.FileNameLength = static_cast<DWORD>(to.size() * sizeof(wchar_t));
  std::vector<std::byte> buffer(sizeof(rename) + rename.FileNameLength);
  std::memcpy(buffer.data(), &rename, sizeof(rename));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), to.c_str(),
              rename.FileNameLength);
  ::SetFileInformationByHandle(file.Get(), FileRenameInfo, buffer.data(),
                               static_cast<DWORD>(buffer.size()));
}

nhupdate::UniqueRegistryKey Create(HKEY hive, const std::wstring& path) {
  nhupdate::UniqueRegistryKey key;
  ::RegCreateKeyExW(hive, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE, nullptr,
                    key.Receive(), nullptr);
  return key;
}

nhupdate::UniqueRegistryKey OpenKey(const std::wstring& path, REGSAM access) {
  nhupdate::UniqueRegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, access, key.Receive());
  return key;
}

void StartProcess(const std::wstring& program) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (::CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                       nullptr, &startup, &information)) {
    // It was started here, so the fence lets it be ended too.
    ::TerminateProcess(information.hProcess, 0);
    ::CloseHandle(information.hThread);
    ::CloseHandle(information.hProcess);
  }
}

void Execute(const std::wstring& program) {
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  execution.lpFile = program.c_str();
  if (::ShellExecuteExW(&execution) && execution.hProcess != nullptr) {
    ::TerminateProcess(execution.hProcess, 0);
    ::CloseHandle(execution.hProcess);
  }
}

// The library writes a line into this file.
void CallLibrary(const std::wstring& journal) {
  ::SetEnvironmentVariableW(kLogJournalVariable, journal.c_str());
  const HMODULE library = ::LoadLibraryW(L"recording_log.dll");
  const auto stop = reinterpret_cast<void (*)()>(::GetProcAddress(library, "Stop"));
  stop();
}

// As the program does when a test hands its calls on.
void DeleteBehindAFake(const std::wstring& path) {
  Interposer<decltype(::DeleteFileW)> fake(
      "DeleteFileW", [&](const wchar_t* name) { return fake.Original()(name); });
  ::DeleteFileW(path.c_str());
}

const std::map<std::wstring, std::function<void(const Aim&)>>& Calls() {
  static const std::map<std::wstring, std::function<void(const Aim&)>> calls = {
      {L"CreateDirectoryW", [](const Aim& a) { ::CreateDirectoryW(a.New().c_str(), nullptr); }},
      {L"RemoveDirectoryW", [](const Aim& a) { ::RemoveDirectoryW(a.New().c_str()); }},
      {L"DeleteFileW", [](const Aim& a) { ::DeleteFileW(a.File().c_str()); }},
      {L"DeleteFileW, literal",
       [](const Aim& a) { ::DeleteFileW((L"\\\\?\\" + a.File()).c_str()); }},
      {L"DeleteFileW, roundabout",
       [](const Aim& a) {
         const std::wstring name = a.place.substr(a.place.rfind(L'\\'));
         ::DeleteFileW((a.scratch + L"\\.." + name + L"/file").c_str());
       }},
      {L"DeleteFileW, faked", [](const Aim& a) { DeleteBehindAFake(a.File()); }},
      {L"SetFileAttributesW",
       [](const Aim& a) { ::SetFileAttributesW(a.File().c_str(), FILE_ATTRIBUTE_HIDDEN); }},
      {L"CopyFileW", [](const Aim& a) { ::CopyFileW(a.File().c_str(), a.New().c_str(), FALSE); }},
      {L"MoveFileW, from",
       [](const Aim& a) { ::MoveFileW(a.File().c_str(), (a.scratch + L"\\moved").c_str()); }},
      {L"MoveFileW, to",
       [](const Aim& a) {
         static_cast<void>(Open(a.scratch + L"\\moved", GENERIC_WRITE, CREATE_ALWAYS));
         ::MoveFileW((a.scratch + L"\\moved").c_str(), a.New().c_str());
       }},
      {L"CreateFileW, to write",
       [](const Aim& a) { static_cast<void>(Open(a.File(), GENERIC_WRITE, OPEN_EXISTING)); }},
      {L"CreateFileW, to append",
       [](const Aim& a) { static_cast<void>(Open(a.File(), FILE_APPEND_DATA, OPEN_EXISTING)); }},
      {L"CreateFileW, to rename",
       [](const Aim& a) { static_cast<void>(Open(a.File(), DELETE, OPEN_EXISTING)); }},
      {L"CreateFileW, to create",
       [](const Aim& a) { static_cast<void>(Open(a.New(), GENERIC_READ, OPEN_ALWAYS)); }},
      {L"SetFileInformationByHandle",
       [](const Aim& a) { Rename(a.scratch + L"\\opened", a.New()); }},
      {L"CreateHardLinkW",
       [](const Aim& a) {
         ::CreateHardLinkW((a.scratch + L"\\link").c_str(), a.File().c_str(), nullptr);
       }},
      {L"CreateSymbolicLinkW",
       [](const Aim& a) {
         ::CreateSymbolicLinkW((a.scratch + L"\\link").c_str(), a.place.c_str(),
                               SYMBOLIC_LINK_FLAG_DIRECTORY);
       }},
      {L"WritePrivateProfileStringW",
       [](const Aim& a) { ::WritePrivateProfileStringW(L"a", L"b", L"c", a.New().c_str()); }},
      {L"SHCreateDirectoryExW",
       [](const Aim& a) { ::SHCreateDirectoryExW(nullptr, a.New().c_str(), nullptr); }},
      {L"RegCreateKeyExW",
       [](const Aim& a) { static_cast<void>(Create(HKEY_CURRENT_USER, a.key + L"\\new")); }},
      {L"RegCreateKeyExW, redirected",
       [](const Aim& a) {
         const nhupdate::UniqueRegistryKey key = OpenKey(a.key, KEY_ALL_ACCESS);
         ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key.Get());
         static_cast<void>(Create(HKEY_LOCAL_MACHINE, L"new"));
       }},
      {L"RegSetValueExW",
       [](const Aim& a) {
         const nhupdate::UniqueRegistryKey key = OpenKey(a.key, KEY_SET_VALUE);
         ::RegSetValueExW(key.Get(), L"new", 0, REG_SZ, nullptr, 0);
       }},
      {L"RegSetKeyValueW",
       [](const Aim& a) {
         ::RegSetKeyValueW(HKEY_CURRENT_USER, a.key.c_str(), L"new", REG_SZ, L"", 2);
       }},
      {L"RegDeleteTreeW", [](const Aim& a) { ::RegDeleteTreeW(HKEY_CURRENT_USER, a.key.c_str()); }},
      {L"CreateProcessW", [](const Aim& a) { StartProcess(a.program); }},
      {L"ShellExecuteExW", [](const Aim& a) { Execute(a.program); }},
      {L"OpenProcess", [](const Aim& a) { ::OpenProcess(PROCESS_TERMINATE, FALSE, a.process); }},
      {L"TerminateProcess",
       [](const Aim& a) {
         // With this handle it can't be ended anyway.
         ::TerminateProcess(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, a.process), 1);
       }},
      {L"the library's CreateFileW", [](const Aim& a) { CallLibrary(a.New()); }},
      // These are outside wherever they aim.
      {L"RegCreateKeyExW, machine",
       [](const Aim& a) { static_cast<void>(Create(HKEY_LOCAL_MACHINE, a.key)); }},
      {L"WritePrivateProfileStringW, mere name",
       [](const Aim&) {
         ::WritePrivateProfileStringW(L"a", L"b", L"c", L"nhupdate_fence_test.ini");
       }},
      {L"ShellExecuteW, searched",
       [](const Aim&) {
         ::ShellExecuteW(nullptr, nullptr, L"nhupdate_no_such_program.exe", nullptr, nullptr,
                         SW_HIDE);
       }},
      {L"MessageBoxW", [](const Aim&) { ::MessageBoxW(nullptr, L"text", L"caption", MB_OK); }},
      // These only read, and are never outside.
      {L"CreateFileW, to read",
       [](const Aim& a) { static_cast<void>(Open(a.File(), GENERIC_READ, OPEN_EXISTING)); }},
      {L"CopyFileW, from",
       [](const Aim& a) { ::CopyFileW(a.File().c_str(), (a.scratch + L"\\copy").c_str(), FALSE); }},
      {L"RegOpenKeyExW", [](const Aim& a) { static_cast<void>(OpenKey(a.key, KEY_READ)); }},
      {L"OpenProcess, to look",
       [](const Aim& a) { ::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, a.process); }},
  };
  return calls;
}

}  // namespace
}  // namespace nhupdate_test

int main() {
  using nhupdate_test::FenceReach;
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (count != 8) {
    return 2;
  }
  const std::wstring reach = arguments[1];
  const auto process = static_cast<DWORD>(std::stoul(arguments[7]));
  const nhupdate_test::Aim aim = {arguments[3], arguments[4], arguments[5], arguments[6],
                                  process != 0 ? process : ::GetCurrentProcessId()};
  nhupdate_test::RaiseFence(reach == L"prefix" ? FenceReach::kPrefix : FenceReach::kScratch);
  const auto call = nhupdate_test::Calls().at(arguments[2]);
  using nhupdate_test::AllowOutside;
  using nhupdate_test::Machine;
  if (reach == L"opened") {
    { const AllowOutside nested("it doesn't close what is open around it", Machine::kAnybodys); }
    const AllowOutside open("that is what is tried", Machine::kAnybodys);
    { const AllowOutside nested("it doesn't close what is open around it", Machine::kAnybodys); }
    call(aim);
  } else if (reach == L"kept") {
    const nhupdate_test::OtherThanWine not_wine;
    const AllowOutside open("that is what is tried");
    call(aim);
  } else {
    { const AllowOutside over("the fence is closed again behind it", Machine::kAnybodys); }
    call(aim);
  }
  return 0;
}
