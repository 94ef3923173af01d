#include "log_library/log_file.h"

#include <cstddef>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

namespace nhupdate {

namespace {

bool RenameOpened(const UniqueFile& file, const std::wstring& new_path) {
  // The structure ends in the name, of which it has room for one unit.
  const std::size_t name_bytes = new_path.size() * sizeof(wchar_t);
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + name_bytes);
  FILE_RENAME_INFO information = {};
  information.ReplaceIfExists = FALSE;
  information.FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(buffer.data(), &information, sizeof(information));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), new_path.c_str(),
              name_bytes + sizeof(wchar_t));
  return ::SetFileInformationByHandle(file.Get(), FileRenameInfo, buffer.data(),
                                      static_cast<DWORD>(buffer.size())) != FALSE;
}

}  // namespace

StartResult CLogFile::Open(const CLogFolder& folder) {
  UniqueFile file = OpenUnfollowed(folder.CurrentFile(), FILE_APPEND_DATA, OPEN_ALWAYS);
  OpenedFile opened;
  if (!file.IsValid() || !Inspect(file, opened)) {
    return StartResult::kFileNotOpened;
  }
  // Where a link was followed nevertheless, the resolved path tells.
  if (opened.IsLink() || opened.IsFolder() || opened.name_count != 1 ||
      !folder.IsCurrentFile(file)) {
    return StartResult::kFileNotTrustworthy;
  }
  file_ = std::move(file);
  identity_ = opened.identity;
  return StartResult::kStarted;
}

bool CLogFile::Append(std::string_view record) {
  std::string with_line_end;
  if (has_open_line_) {
    with_line_end = "\n";
    with_line_end += record;
    record = with_line_end;
  }
  DWORD written = 0;
  // How much was written tells all.
  std::ignore =
      ::WriteFile(file_.Get(), record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
  if (written != 0) {
    has_open_line_ = written < record.size();
  }
  return written == record.size();
}

std::uint64_t CLogFile::Size() const {
  FILE_STANDARD_INFO information = {};
  if (!::GetFileInformationByHandleEx(file_.Get(), FileStandardInfo, &information,
                                      sizeof(information))) {
    return 0;
  }
  return static_cast<std::uint64_t>(information.EndOfFile.QuadPart);
}

bool CLogFile::Rename(const CLogFolder& folder, const std::wstring& new_path) const {
  // A handle of its own, closed at once: as long as it is open, nobody could open the file without
  // sharing deletion, and most programs that show a text don't.
  const UniqueFile file = OpenUnfollowed(folder.CurrentFile(), DELETE, OPEN_EXISTING);
  OpenedFile opened;
  return file.IsValid() && Inspect(file, opened) && opened.identity == identity_ &&
         RenameOpened(file, new_path);
}

void CLogFile::Flush() const {
  std::ignore = ::FlushFileBuffers(file_.Get());  // nobody is told, and the records are written
}

}  // namespace nhupdate
