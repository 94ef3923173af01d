#pragma once

// The folder with the log files: the current one, NHUpdateManager.log, and the rotated ones,
// NHUpdateManager.<number>.log with the highest number for the youngest. A rotated file never
// changes its name again.

#include <cstdint>
#include <string>

#include "log_library/start_result.h"

namespace nhupdate {

class CLogFolder {
 public:
  // Takes the folder after making sure that it is one and no link.
  [[nodiscard]] StartResult Open(const std::wstring& path);

  [[nodiscard]] std::wstring CurrentFile() const;

  // A name for the current file to get when it is rotated: one higher than that of the youngest
  // rotated file, passing over names that are taken by whatever it may be.
  [[nodiscard]] std::wstring NextRotatedFile() const;

  // Deletes rotated files: those that were written last more than `max_age_days` ago, and the
  // oldest beyond `max_count`. What can't be deleted stays until the next time. Only names are
  // deleted: what a planted link points to is left alone, and so are folders.
  void DeleteOutdated(std::uint32_t max_count, std::uint32_t max_age_days) const;

  // True when the path, with links resolved, is that of a current file in this very folder.
  [[nodiscard]] bool IsCurrentFile(const std::wstring& resolved_path) const;

 private:
  std::wstring path_;
  std::wstring resolved_path_;
};

}  // namespace nhupdate
