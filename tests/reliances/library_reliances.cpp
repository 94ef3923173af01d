// Libraries, this program's own path, the shell's folders.

#include "tests/reliances/child.h"
#include "tests/reliances/reliance.h"

#include <knownfolders.h>  // needs <windows.h> first
#include <objbase.h>       // likewise
#include <shlobj.h>        // likewise

namespace nhupdate_test {

namespace {

constexpr wchar_t kLibraryName[] = L"nhupdate_library.dll";

// Any image will do.
std::wstring MakeLibrary(const std::wstring& folder) {
  std::wstring library = folder + L"\\" + kLibraryName;
  if (!::CopyFileW(OwnPath().c_str(), library.c_str(), TRUE)) {
    GiveUp("copy to", library);
  }
  return library;
}

// The error of loading it in a process whose current folder it lies in.
std::string LoadInItsFolder(const std::wstring& folder, const std::wstring& task) {
  MakeLibrary(folder);
  return std::to_string(ExitCodeOf(StartChild(OwnPath(), task, folder)));
}

}  // namespace

Reliances LibraryReliances() {
  return {
      {"LoadLibraryW, a library in the current folder", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return LoadInItsFolder(folder, std::wstring(L"load ") + kLibraryName);
       }},
      {"SetDefaultDllDirectories, then the same", "126", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return LoadInItsFolder(folder, std::wstring(L"load-safely ") + kLibraryName);
       }},
      {"SetDefaultDllDirectories, then the same by its path", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return LoadInItsFolder(folder, L"load-safely \"" + folder + L"\\" + kLibraryName + L"\"");
       }},
      {"LoadLibraryW, a library that is no library", "193", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring garbage = MakeFile(folder + L"\\garbage.dll", "no library");
         const nhupdate::UniqueLibrary library(::LoadLibraryW(garbage.c_str()));
         return ErrorOf(library.IsValid());
       }},
      {"LoadLibraryW, a missing library", "126", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueLibrary library(::LoadLibraryW((folder + L"\\none.dll").c_str()));
         return ErrorOf(library.IsValid());
       }},
      {"GetProcAddress, a missing function", "127", Wine::kAsWindows,
       [](const std::wstring&) {
         const auto found = ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "NoSuchFunction");
         return ErrorOf(found != nullptr);
       }},
      {"GetModuleFileNameW, units that it gives when there is room for four", "4", Wine::kAsWindows,
       [](const std::wstring&) {
         wchar_t path[4] = {};
         return std::to_string(::GetModuleFileNameW(nullptr, path, 4));
       }},
      {"SHGetKnownFolderPath, the text that it leaves when it fails", "null", Wine::kAsWindows,
       [](const std::wstring&) -> std::string {
         const GUID unknown = {0x4E485550, 0x4441, 0x5445, {1, 2, 3, 4, 5, 6, 7, 8}};
         wchar_t not_null = L'x';
         PWSTR text = &not_null;
         const HRESULT result = ::SHGetKnownFolderPath(unknown, 0, nullptr, &text);
         if (SUCCEEDED(result)) {
           ::CoTaskMemFree(text);
           return "it succeeds";
         }
         return text == nullptr ? "null" : "something";
       }},
  };
}

}  // namespace nhupdate_test
