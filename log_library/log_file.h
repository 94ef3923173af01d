#pragma once

// The current log file, open for appending and for nothing else: what is in it can't be written
// over or cut off. Readers, and whoever renames or deletes it, are never in the way of each other.

#include <cstdint>
#include <string>
#include <string_view>

#include "base/unique_handle.h"
#include "log_library/log_folder.h"
#include "log_library/opened_file.h"
#include "log_library/start_result.h"

namespace nhupdate {

class CLogFile {
 public:
  // Opens the folder's current file, or makes it. When there is anything else than a plain file of
  // one name the file stays closed; nothing has been written then.
  [[nodiscard]] StartResult Open(const CLogFolder& folder);

  // Writes the record in one piece. False when it was lost or cut short for lack of room; the next
  // one that finds room begins a line of its own all the same.
  [[nodiscard]] bool Append(std::string_view record);

  // In bytes, as all processes together have made it; 0 when Windows doesn't tell.
  [[nodiscard]] std::uint64_t Size() const;

  [[nodiscard]] bool IsSameFile(const CLogFile& other) const {
    return identity_ == other.identity_;
  }

  // Renames the file, which is to be the folder's current one, and never over another. The file
  // stays open. False when it is not, or someone has it open who doesn't allow that.
  [[nodiscard]] bool Rename(const CLogFolder& folder, const std::wstring& new_path) const;

  // Makes sure that what has been written is on the disk.
  void Flush() const;

 private:
  UniqueFile file_;
  FileIdentity identity_;
  bool has_open_line_ = false;  // the last record was cut short
};

}  // namespace nhupdate
