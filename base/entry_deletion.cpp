#include "base/entry_deletion.h"

#include "base/unique_handle.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

// The entry itself, even if it is a link. Without the flag for folders Windows opens no folder.
UniqueFile OpenItself(const std::wstring& path, DWORD access, EntryKind kind) {
  const DWORD kind_flag = kind == EntryKind::kFolder ? FILE_FLAG_BACKUP_SEMANTICS : 0;
  return UniqueFile(::CreateFileW(PathForWindows(path).c_str(), access | FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | kind_flag,
                                  nullptr));
}

// FileDispositionInfoEx and what belongs to it, which not every set of headers has.
constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr DWORD kDelete = 0x1;
constexpr DWORD kPosixSemantics = 0x2;
constexpr DWORD kForceImageSectionCheck = 0x4;
struct DispositionInfoEx {
  DWORD flags;
};

bool IsOfKind(const UniqueFile& entry, EntryKind kind) {
  FILE_BASIC_INFO information = {};
  const bool is_folder = ::GetFileInformationByHandleEx(entry.Get(), FileBasicInfo, &information,
                                                        sizeof(information)) &&
                         (information.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return is_folder == (kind == EntryKind::kFolder);
}

bool DeleteOpened(const UniqueFile& entry) {
  // The name is free at once, even while others still have the file open: a new file is about to
  // take it. A program that is running can't be deleted so either. Older file systems only know the
  // plain way.
  DispositionInfoEx at_once = {kDelete | kPosixSemantics | kForceImageSectionCheck};
  FILE_DISPOSITION_INFO plain = {TRUE};
  return ::SetFileInformationByHandle(entry.Get(), kDispositionInfoEx, &at_once, sizeof(at_once)) ||
         ::SetFileInformationByHandle(entry.Get(), FileDispositionInfo, &plain, sizeof(plain));
}

}  // namespace

std::optional<DWORD> DeleteEntry(const std::wstring& path, EntryKind kind, const CPlace& place) {
  const UniqueFile entry = OpenItself(path, DELETE, kind);
  const DWORD open_error = ::GetLastError();
  if (!entry.IsValid()) {
    return open_error;
  }
  if (!CPlace(entry).IsSameAs(place)) {
    return ERROR_CANT_ACCESS_FILE;
  }
  if (!IsOfKind(entry, kind)) {
    return ERROR_DIRECTORY;
  }
  if (!DeleteOpened(entry)) {
    const DWORD error = ::GetLastError();
    return error;
  }
  return std::nullopt;
}

void ClearReadOnly(const std::wstring& file, const CPlace& place) {
  const UniqueFile opened = OpenItself(file, FILE_WRITE_ATTRIBUTES, EntryKind::kFile);
  FILE_BASIC_INFO information = {};
  if (!opened.IsValid() || !CPlace(opened).IsSameAs(place) ||
      !::GetFileInformationByHandleEx(opened.Get(), FileBasicInfo, &information,
                                      sizeof(information))) {
    return;
  }
  // 0 means "leave as it is", for the times and for the attributes too, so a file without any
  // others is called normal.
  const DWORD writable = information.FileAttributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
  information = {};
  information.FileAttributes = writable != 0 ? writable : FILE_ATTRIBUTE_NORMAL;
  ::SetFileInformationByHandle(opened.Get(), FileBasicInfo, &information, sizeof(information));
}

}  // namespace nhupdate
