// Files and folders.

#include <cstddef>
#include <cstring>

#include "tests/support/fence_ground.h"
#include "tests/support/fenced_function.h"

// These need <windows.h> first.
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {

namespace {

void CheckPath(const char* function, const wchar_t* path) {
  if (!IsPathInside(path)) {
    RefuseUnlessAllowed(function, path);
  }
}

// Paths that the function only reads are not among them.
template <std::size_t... kPlaces>
constexpr CheckArguments<CheckPath, kPlaces...> kPaths = {};

// Through a link that leads outside every other call would get there. A target without a drive is
// relative to the link.
constexpr auto kLink = [](const char* function, const wchar_t* link, const wchar_t* target, DWORD) {
  CheckPath(function, link);
  const std::wstring from_drive = target;
  const bool is_relative =
      from_drive.find(L':') == std::wstring::npos && !from_drive.starts_with(L"\\");
  const std::wstring place = std::wstring(link) + L"\\..\\" + from_drive;
  CheckPath(function, is_relative ? place.c_str() : target);
};

bool IsForChanges(DWORD access) {
  constexpr DWORD kChanging = GENERIC_WRITE | GENERIC_ALL | MAXIMUM_ALLOWED | DELETE | WRITE_DAC |
                              WRITE_OWNER | FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_WRITE_EA |
                              FILE_WRITE_ATTRIBUTES | FILE_DELETE_CHILD;
  return (access & kChanging) != 0;
}

// The console, nothing at all, and pipes are in no folder.
bool IsNoFile(const std::wstring& name) {
  return name == L"CONIN$" || name == L"CONOUT$" || name == L"NUL" ||
         name.starts_with(L"\\\\.\\pipe\\");
}

// Every disposition but this one may create a file.
constexpr auto kCreateFile = [](const char* function, const wchar_t* path, DWORD access, DWORD,
                                SECURITY_ATTRIBUTES*, DWORD disposition, DWORD flags, HANDLE) {
  const bool may_change = IsForChanges(access) || disposition != OPEN_EXISTING ||
                          (flags & FILE_FLAG_DELETE_ON_CLOSE) != 0;
  if (path != nullptr && may_change && !IsNoFile(path)) {
    CheckPath(function, path);
  }
};

constexpr auto kCreateFile2 = [](const char* function, const wchar_t* path, DWORD access, DWORD,
                                 DWORD disposition, CREATEFILE2_EXTENDED_PARAMETERS* parameters) {
  const DWORD flags = parameters != nullptr ? parameters->dwFileFlags : 0;
  kCreateFile(function, path, access, 0, nullptr, disposition, flags, nullptr);
};

// The handle was looked at when it was opened; a new name leads to another place.
constexpr auto kFileInformation = [](const char* function, HANDLE, FILE_INFO_BY_HANDLE_CLASS kind,
                                     void* information, DWORD size) {
  constexpr int kRenameEx = 22;
  if (kind != FileRenameInfo && static_cast<int>(kind) != kRenameEx) {
    return;
  }
  constexpr std::size_t kNameAt = offsetof(FILE_RENAME_INFO, FileName);
  FILE_RENAME_INFO rename = {};
  if (information == nullptr || size < kNameAt) {
    return;
  }
  std::memcpy(&rename, information, kNameAt);
  if (rename.FileNameLength > size - kNameAt) {
    return;
  }
  std::wstring name(rename.FileNameLength / sizeof(wchar_t), L'\0');
  std::memcpy(name.data(), static_cast<const std::byte*>(information) + kNameAt,
              name.size() * sizeof(wchar_t));
  // A mere name stays in the folder that the file is in.
  if (name.find(L'\\') != std::wstring::npos) {
    CheckPath(function, name.c_str());
  }
};

// Windows looks for a mere name in its own folder; none at all is win.ini.
void CheckProfile(const char* function, const wchar_t* file) {
  const std::wstring name = file != nullptr ? file : L"win.ini";
  if (name.find(L'\\') == std::wstring::npos) {
    RefuseUnlessAllowed(function, name);
  } else {
    CheckPath(function, name.c_str());
  }
}

// Says in a structure of many forms what it changes; no test needs it.
constexpr auto kShellOperation = [](const char* function, SHFILEOPSTRUCTW* operation) {
  RefuseUnlessAllowed(function, operation->pFrom != nullptr ? operation->pFrom : L"");
};

}  // namespace

const std::vector<FencedFunction>& FencedFileCalls() {
  static const std::vector<FencedFunction> calls = {
      // What the program and the log library change disks with, and what tests do.
      NHUPDATE_FENCED(CreateDirectoryW, kPaths<0>),
      NHUPDATE_FENCED(RemoveDirectoryW, kPaths<0>),
      NHUPDATE_FENCED(DeleteFileW, kPaths<0>),
      NHUPDATE_FENCED(SetFileAttributesW, kPaths<0>),
      NHUPDATE_FENCED(CopyFileW, kPaths<1>),
      NHUPDATE_FENCED(MoveFileW, kPaths<0, 1>),
      NHUPDATE_FENCED(CreateFileW, kCreateFile),
      NHUPDATE_FENCED(SetFileInformationByHandle, kFileInformation),
      NHUPDATE_FENCED(CreateHardLinkW, kPaths<0, 1>),
      NHUPDATE_FENCED(CreateSymbolicLinkW, kLink),
      NHUPDATE_FENCED(WritePrivateProfileStringW, CheckArguments<CheckProfile, 3>{}),
      NHUPDATE_FENCED(SHCreateDirectoryExW, kPaths<1>),
      // What does the same by other names: a change of the program to these shall not make a hole.
      NHUPDATE_FENCED(CreateDirectoryExW, kPaths<1>),
      NHUPDATE_FENCED(CopyFileExW, kPaths<1>),
      NHUPDATE_FENCED(MoveFileExW, kPaths<0, 1>),
      NHUPDATE_FENCED(MoveFileWithProgressW, kPaths<0, 1>),
      NHUPDATE_FENCED(ReplaceFileW, kPaths<0, 1, 2>),
      NHUPDATE_FENCED(CreateFile2, kCreateFile2),
      NHUPDATE_FENCED(WritePrivateProfileSectionW, CheckArguments<CheckProfile, 2>{}),
      NHUPDATE_FENCED(GetTempFileNameW, kPaths<0>),
      NHUPDATE_FENCED(SHFileOperationW, kShellOperation),
  };
  return calls;
}

}  // namespace nhupdate_test
