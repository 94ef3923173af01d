#pragma once

// A started log: takes records and keeps the files in order.
//
// A record that can't be written whole, on a full disk, is counted. Before the next one that can
// be, there is a warning of the library's own with the number of those that were lost or cut short,
// even if the level leaves warnings out. Only what is lost last of all, before the log is stopped,
// is never told of.
//
// Anyone may keep the current file from being opened: by a handle that doesn't share it for
// writing, or by a link, a folder or a file of several names in its place. The records then go to a
// file of this process alone, under the next name of a rotated one, whose header record says so.
// Once a second it is tried whether the current file can be had again; from then on the records go
// there. Should the file in its place become full before that, another one follows it.

#include <cstdint>
#include <string>
#include <string_view>

#include "base/windows.h"
#include "log_library/log_file.h"
#include "log_library/log_folder.h"
#include "log_library/record_text.h"
#include "log_library/settings.h"
#include "log_library/start_result.h"
#include "log_library/write_turn.h"

namespace nhupdate {

class CLogger {
 public:
  // Opens the log and writes the header record, whatever the level.
  [[nodiscard]] StartResult Start(std::string_view interface_version, const LogSettings& settings,
                                  const std::wstring& log_folder);

  void Write(int level, std::wstring_view tag, std::wstring_view text);

  void Flush() const { file_.Flush(); }

 private:
  // A file that others hold is tried for half a second.
  [[nodiscard]] OpenResult OpenCurrentFile();

  void Append(int level, std::wstring_view tag, std::wstring_view text);

  // Writes the record into the file as it is, or counts it.
  void AppendToFile(int level, std::wstring_view tag, std::wstring_view text);

  // False when records were lost and that, too, could not be written. The record that was to follow
  // is then lost with them: a log without a word about the gap would seem complete.
  [[nodiscard]] bool ReportLoss(const RecordOrigin& origin);

  // Sees to it that the next record comes into the right file.
  void PrepareFile();

  [[nodiscard]] bool IsFull(const LogFileState& state) const {
    return state.size >= settings_.MaxFileBytes();
  }

  // When another file has the name now, that one is taken. One that can't be had is no failure:
  // the records then go where the previous ones went.
  OpenResult FollowRename();

  // False when the file stays the one it was.
  bool Rotate();

  // Goes on in a file in the current one's place and begins it with a header record. `reason` is
  // what came of opening the current one. False when none can be made.
  bool StepAside(OpenResult reason);

  void DeleteOutdated() const;

  LogSettings settings_;
  CLogFolder folder_;
  CLogFile file_;
  CWriterQueue queue_;
  std::wstring header_;
  std::uint64_t lost_records_ = 0;  // since the last one that was written
  ULONGLONG next_check_ = 0;        // both in the milliseconds of the system's uptime
  ULONGLONG next_rotation_ = 0;
  bool is_cleanup_due_ = true;
};

}  // namespace nhupdate
