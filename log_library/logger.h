#pragma once

// A started log: takes records and keeps the files in order.

#include <string_view>

#include "base/windows.h"
#include "log_library/log_file.h"
#include "log_library/log_folder.h"
#include "log_library/settings.h"
#include "log_library/start_result.h"
#include "log_library/write_turn.h"

namespace nhupdate {

class CLogger {
 public:
  // Opens the log and writes the header record, whatever the level.
  [[nodiscard]] StartResult Start(std::string_view program_version, const LogSettings& settings,
                                  const std::wstring& log_folder);

  void Write(int level, std::wstring_view tag, std::wstring_view text);

  void Flush() const { file_.Flush(); }

 private:
  void Append(int level, std::wstring_view tag, std::wstring_view text);

  // Sees to it that the next record comes into the right file. Without a turn of its own a process
  // rotates nothing, but it follows when others have.
  void PrepareFile(bool is_our_turn);

  [[nodiscard]] bool IsFull() const { return file_.Size() >= settings_.MaxFileBytes(); }

  // When another file has the name now, that one is taken. One that can't be had is no failure:
  // the records then go where the previous ones went.
  void FollowRename();

  // False when the file stays the one it was.
  bool Rotate();

  void DeleteOutdated() const;

  LogSettings settings_;
  CLogFolder folder_;
  CLogFile file_;
  CWriterQueue queue_;
  ULONGLONG next_check_ = 0;  // both in the milliseconds of the system's uptime
  ULONGLONG next_rotation_ = 0;
};

}  // namespace nhupdate
