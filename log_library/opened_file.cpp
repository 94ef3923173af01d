#include "log_library/opened_file.h"

namespace nhupdate {

UniqueFile OpenUnfollowed(const std::wstring& path, DWORD access, DWORD disposition,
                          DWORD sharing) {
  // Without the backup semantics a folder could not be opened.
  return UniqueFile(::CreateFileW(
      path.c_str(), access | FILE_READ_ATTRIBUTES | SYNCHRONIZE, sharing, nullptr, disposition,
      FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool Inspect(const UniqueFile& file, OpenedFile& opened) {
  BY_HANDLE_FILE_INFORMATION information = {};
  if (::GetFileType(file.Get()) != FILE_TYPE_DISK ||
      !::GetFileInformationByHandle(file.Get(), &information)) {
    return false;
  }
  opened.identity = {information.dwVolumeSerialNumber,
                     (std::uint64_t{information.nFileIndexHigh} << 32) | information.nFileIndexLow};
  opened.attributes = information.dwFileAttributes;
  opened.name_count = information.nNumberOfLinks;
  return true;
}

}  // namespace nhupdate
