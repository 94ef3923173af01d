#include "log_library/log_file.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "log_library/file_names.h"

namespace nhupdate {

namespace {

// Returns Windows' error.
DWORD RenameOpened(const UniqueFile& file, const std::wstring& new_path) {
  // The structure ends in the name, of which it has room for one unit.
  const std::size_t name_bytes = new_path.size() * sizeof(wchar_t);
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + name_bytes);
  FILE_RENAME_INFO information = {};
  information.ReplaceIfExists = FALSE;
  information.FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(buffer.data(), &information, sizeof(information));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), new_path.c_str(),
              name_bytes + sizeof(wchar_t));
  const BOOL is_renamed = ::SetFileInformationByHandle(file.Get(), FileRenameInfo, buffer.data(),
                                                       static_cast<DWORD>(buffer.size()));
  const DWORD error = ::GetLastError();
  return is_renamed ? ERROR_SUCCESS : error;
}

// True when the last of the file's `size` bytes is no line end; false also when it can't be read.
// What is open for appending can't be read, so the file is opened once more, by its handle and not
// by a name.
bool EndsWithinALine(const UniqueFile& file, std::uint64_t size) {
  if (size == 0) {
    return false;
  }
  const UniqueFile reader(::ReOpenFile(file.Get(), FILE_READ_DATA, kShareAll, 0));
  OVERLAPPED position = {};
  position.Offset = static_cast<DWORD>(size - 1);
  position.OffsetHigh = static_cast<DWORD>((size - 1) >> 32);
  char last = '\n';
  DWORD read = 0;
  return reader.IsValid() && ::ReadFile(reader.Get(), &last, sizeof(last), &read, &position) &&
         read == sizeof(last) && last != '\n';
}

}  // namespace

OpenResult CLogFile::Open(const CLogFolder& folder) {
  const OpenResult result = OpenOnce(folder);
  // Another writer may have put the file aside between its opening and the look at its name.
  return result == OpenResult::kNotTrustworthy ? OpenOnce(folder) : result;
}

OpenResult CLogFile::OpenOnce(const CLogFolder& folder) {
  UniqueFile file =
      OpenUnfollowed(folder.PathOf(kCurrentName), FILE_APPEND_DATA, OPEN_ALWAYS, kShareAll);
  const DWORD error = ::GetLastError();
  if (!file.IsValid()) {
    return error == ERROR_SHARING_VIOLATION ? OpenResult::kHeld : OpenResult::kFailed;
  }
  OpenedFile opened;
  if (!Inspect(file, opened)) {
    return OpenResult::kFailed;
  }
  // If a link was followed all the same, the file lies elsewhere than its name says.
  if (opened.IsLink() || opened.IsFolder() || opened.name_count != 1 ||
      !folder.IsNamed(file, kCurrentName)) {
    return OpenResult::kNotTrustworthy;
  }
  Take(std::move(file), opened.identity);
  return OpenResult::kOpened;
}

bool CLogFile::MakeRotated(const CLogFolder& folder) {
  for (const std::wstring& name : folder.NextRotatedNames()) {
    UniqueFile file = OpenUnfollowed(folder.PathOf(name), FILE_APPEND_DATA, CREATE_NEW,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE);
    const DWORD error = ::GetLastError();
    if (!file.IsValid() && (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS)) {
      continue;
    }
    OpenedFile opened;
    if (!file.IsValid() || !Inspect(file, opened) || !folder.IsNamed(file, name)) {
      return false;
    }
    Take(std::move(file), opened.identity);
    return true;
  }
  return false;
}

void CLogFile::Take(UniqueFile file, const FileIdentity& identity) {
  file_ = std::move(file);
  identity_ = identity;
  seen_size_.reset();
  end_ = 0;
  has_open_line_ = false;
}

bool CLogFile::Append(std::string_view record) {
  const std::uint64_t size = seen_size_ ? *seen_size_ : State().size;
  seen_size_.reset();
  if (size != end_) {
    has_open_line_ = EndsWithinALine(file_, size);
  }
  std::string with_line_end;
  if (has_open_line_) {
    with_line_end = "\n";
    with_line_end += record;
    record = with_line_end;
  }
  DWORD written = 0;
  // A write that fails has written nothing.
  ::WriteFile(file_.Get(), record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
  end_ = size + written;
  if (written != 0) {
    has_open_line_ = written < record.size();
  }
  return written == record.size();
}

LogFileState CLogFile::State() {
  if (!file_.IsValid()) {
    return {.is_deleted = true};
  }
  LogFileState state;
  FILE_STANDARD_INFO information = {};
  if (::GetFileInformationByHandleEx(file_.Get(), FileStandardInfo, &information,
                                     sizeof(information))) {
    state.size = static_cast<std::uint64_t>(information.EndOfFile.QuadPart);
    state.is_deleted = information.DeletePending != FALSE || information.NumberOfLinks == 0;
  }
  seen_size_ = state.size;
  return state;
}

bool CLogFile::Rename(const CLogFolder& folder) const {
  const std::vector<std::wstring> names = folder.NextRotatedNames();
  // A handle of its own, closed at once: as long as it is open, nobody could open the file without
  // sharing deletion, and most programs that show a text don't.
  const UniqueFile file =
      OpenUnfollowed(folder.PathOf(kCurrentName), DELETE, OPEN_EXISTING, kShareAll);
  OpenedFile opened;
  if (!file.IsValid() || !Inspect(file, opened) || opened.identity != identity_) {
    return false;
  }
  for (const std::wstring& name : names) {
    const DWORD error = RenameOpened(file, folder.PathOf(name));
    if (error != ERROR_ALREADY_EXISTS) {
      return error == ERROR_SUCCESS;
    }
    if (!folder.IsNamed(file, kCurrentName)) {
      return false;  // another process was quicker, and the file has the name that it gave
    }
  }
  return false;
}

void CLogFile::Flush() const {
  ::FlushFileBuffers(file_.Get());  // nobody is told, and the records are written
}

}  // namespace nhupdate
