#include "base/entry_deletion.h"

#include "base/windows_path.h"

namespace nhupdate {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The entry itself, even if it is a link. As a file Windows opens no folder, so what could be
// opened is one; as a folder it opens both.
UniqueFile OpenItself(const std::wstring& path, DWORD access, EntryKind kind,
                      DWORD sharing = kShareAll) {
  const DWORD kind_flag = kind == EntryKind::kFolder ? FILE_FLAG_BACKUP_SEMANTICS : 0;
  return UniqueFile(::CreateFileW(PathForWindows(path).c_str(), access | FILE_READ_ATTRIBUTES,
                                  sharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT | kind_flag, nullptr));
}

// FileDispositionInfoEx and what belongs to it, which not every set of headers has.
constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr DWORD kDelete = 0x1;
constexpr DWORD kPosixSemantics = 0x2;
constexpr DWORD kForceImageSectionCheck = 0x4;
struct DispositionInfoEx {
  DWORD flags;
};

bool IsFolder(const UniqueFile& entry) {
  FILE_BASIC_INFO information = {};
  return ::GetFileInformationByHandleEx(entry.Get(), FileBasicInfo, &information,
                                        sizeof(information)) &&
         (information.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool HasOneName(const UniqueFile& file) {
  FILE_STANDARD_INFO information = {};
  return ::GetFileInformationByHandleEx(file.Get(), FileStandardInfo, &information,
                                        sizeof(information)) &&
         information.NumberOfLinks <= 1;
}

// Returns the error.
std::optional<DWORD> DeleteOpened(const UniqueFile& entry) {
  // The name is free at once, even while others still have the file open: a new file is about to
  // take it. A program that is running can't be deleted so either. Older file systems only know the
  // plain way.
  DispositionInfoEx at_once = {kDelete | kPosixSemantics | kForceImageSectionCheck};
  FILE_DISPOSITION_INFO plain = {TRUE};
  if (::SetFileInformationByHandle(entry.Get(), kDispositionInfoEx, &at_once, sizeof(at_once)) ||
      ::SetFileInformationByHandle(entry.Get(), FileDispositionInfo, &plain, sizeof(plain))) {
    return std::nullopt;
  }
  const DWORD error = ::GetLastError();
  return error;
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
  if (kind == EntryKind::kFolder && !IsFolder(entry)) {
    return ERROR_DIRECTORY;
  }
  return DeleteOpened(entry);
}

std::optional<DWORD> DeleteEntryInItsPlace(const std::wstring& path) {
  const UniqueFile entry = OpenItself(path, DELETE, EntryKind::kFolder);
  const DWORD open_error = ::GetLastError();
  return entry.IsValid() ? DeleteOpened(entry) : open_error;
}

CHeldFile::CHeldFile(const std::wstring& path, const CPlace& place)
    : file_(OpenItself(path, DELETE, EntryKind::kFile, FILE_SHARE_READ | FILE_SHARE_WRITE)) {
  if (file_.IsValid() && !(HasOneName(file_) && CPlace(file_).IsExactly(place))) {
    file_.Reset();
  }
}

bool CHeldFile::Delete() {
  const bool is_deleted = !DeleteOpened(file_);
  file_.Reset();
  return is_deleted;
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
