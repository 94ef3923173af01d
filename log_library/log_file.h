#pragma once

// A log file, open for appending and for nothing else: what is in it can't be written over or cut
// off. Readers of the current one, and whoever renames or deletes it, are never in the way of each
// other.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/unique_handle.h"
#include "log_library/log_folder.h"
#include "log_library/opened_file.h"

namespace nhupdate {

enum class OpenResult {
  kOpened,
  kHeld,            // another program has it open and doesn't share it for writing
  kFailed,          // Windows refuses it for another reason
  kNotTrustworthy,  // a link, a folder or a file of several names
};

struct LogFileState {
  std::uint64_t size = 0;  // in bytes, as all processes together have made it
  bool is_deleted = false;
};

class CLogFile {
 public:
  // Opens the folder's current file, or makes it. When that fails the file stays closed; nothing
  // has been written then.
  [[nodiscard]] OpenResult Open(const CLogFolder& folder);

  // Makes a file under the next free name of a rotated one. As long as it is open nobody can rename
  // or delete it, other processes that clean up included. False when none can be made.
  [[nodiscard]] bool MakeRotated(const CLogFolder& folder);

  // Writes the record in one piece. False when it was lost or cut short for lack of room. Whatever
  // the file ends with, this process's or another's, the record begins a line of its own.
  [[nodiscard]] bool Append(std::string_view record);

  // No size and not deleted when Windows doesn't tell; a file that is closed counts as deleted. The
  // next record relies on that size, so nothing that takes long should come in between.
  [[nodiscard]] LogFileState State();

  [[nodiscard]] bool IsSameFile(const CLogFile& other) const {
    return file_.IsValid() && other.file_.IsValid() && identity_ == other.identity_;
  }

  // Nothing can be written then.
  void Close() { Take(UniqueFile(), {}); }

  // Renames the file, which is to be the folder's current one, to the next free name of a rotated
  // one, and never over another. The file stays open. False when it is not the current one any
  // more, or someone has it open who doesn't allow that.
  [[nodiscard]] bool Rename(const CLogFolder& folder) const;

  // Makes sure that what has been written is on the disk.
  void Flush() const;

 private:
  [[nodiscard]] OpenResult OpenOnce(const CLogFolder& folder);
  void Take(UniqueFile file, const FileIdentity& identity);

  UniqueFile file_;
  FileIdentity identity_;
  std::optional<std::uint64_t> seen_size_;  // since the last record
  std::uint64_t end_ = 0;       // where this process's last record ends, if no other came behind it
  bool has_open_line_ = false;  // the last record was cut short: its line end is missing
};

}  // namespace nhupdate
