#pragma once

// Copying what is in one folder over another.

#include <string>

#include "log/log.h"

namespace nhupdate {

// Files that are still in use are usually free again a moment later, so copies are tried again.
inline constexpr unsigned long kCopyRetryDelayMs = 3000;

struct CopyOptions {
  bool recurse = true;  // folders too, and not only files
  bool log_details = true;
  // A sub-folder of the destination is deleted before one of that name is copied, unless it may
  // hold the source. Deeper levels are never deleted.
  bool delete_existing_sub_folders = false;
};

class CFolderCopy {
 public:
  // `running_folder` holds the running program and is never touched; `owned_root` is the folder of
  // the product, within which no link is followed when something is deleted. `last_failed_path` is
  // set to what could not be copied, whenever there is such a thing. All but the log must outlive
  // the object.
  CFolderCopy(const std::wstring& running_folder, const std::wstring& owned_root, const CLog& log,
              std::wstring& last_failed_path)
      : running_folder_(running_folder),
        owned_root_(owned_root),
        log_(log),
        last_failed_path_(last_failed_path) {}

  // Copies what is in `source` over `destination`, whose parent must exist, up to the first thing
  // that can't be copied or listed. A missing source is an empty one. Returns false when there was
  // such a thing.
  [[nodiscard]] bool Copy(const std::wstring& destination, const std::wstring& source,
                          const CopyOptions& options);

  // The same up to ten times, which takes at most 30 s longer; logs how it went.
  [[nodiscard]] bool CopyWithRetries(const std::wstring& destination, const std::wstring& source,
                                     const CopyOptions& options);

 private:
  [[nodiscard]] bool CopyOneFile(const std::wstring& target, const std::wstring& source,
                                 const CopyOptions& options);
  [[nodiscard]] bool CopySubFolder(const std::wstring& target, const std::wstring& source,
                                   const CopyOptions& options);

  const std::wstring& running_folder_;
  const std::wstring& owned_root_;
  CLog log_;
  std::wstring& last_failed_path_;
};

}  // namespace nhupdate
