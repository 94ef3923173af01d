#pragma once

// Copying what is in one folder over another.

#include <optional>
#include <string>

#include "base/folder_place.h"
#include "base/held_folder.h"
#include "base/product_folders.h"
#include "base/windows.h"
#include "install/folder_removal.h"
#include "log/log.h"

namespace nhupdate {

// Files that are still in use are usually free again a moment later, so copies are tried again.
inline constexpr DWORD kCopyRetryDelayMs = 3000;

struct CopyOptions {
  bool recurse = true;  // folders too, and not only files
  bool log_details = true;
  // A sub-folder of the destination is deleted before one of that name is copied, unless it may
  // hold the source. Deeper levels are never deleted.
  bool delete_existing_sub_folders = false;
};

class CFolderCopy {
 public:
  // The folder of the running program is never touched, and within the base folder no link is
  // followed when something is deleted. Without a base folder nothing is copied, as if each source
  // were missing. `last_failed_path` is set to what could not be copied, whenever there is such a
  // thing. All but the log must outlive the object.
  CFolderCopy(const ProductFolders& folders, const CLog& log, std::wstring& last_failed_path)
      : folders_(folders),
        log_(log),
        last_failed_path_(last_failed_path),
        removal_(folders.base_folder) {}

  // Copies what is in `source` over `destination`, whose parent must exist, up to the first thing
  // that can't be copied or listed, and returns false when there is such a thing. A source that
  // isn't there is an empty one; a folder in it that can't be listed any more is such a thing.
  // Either of the two may be reached by links. Below them no link to a folder is followed: one in
  // the source is copied as an empty folder, and one in the destination is replaced by a folder.
  // Files are copied by their paths, as Windows does it.
  [[nodiscard]] bool Copy(const std::wstring& destination, const std::wstring& source,
                          const CopyOptions& options);

  // The same up to ten times, which takes at most 30 s longer; logs how it went.
  [[nodiscard]] bool CopyWithRetries(const std::wstring& destination, const std::wstring& source,
                                     const CopyOptions& options);

 private:
  [[nodiscard]] bool CopyContent(const std::wstring& destination, const CPlace& place,
                                 const std::wstring& source, const CopyOptions& options,
                                 bool may_be_missing);
  [[nodiscard]] bool CopyOneFile(const std::wstring& target, const std::wstring& source,
                                 const CopyOptions& options);
  // `first` is the first folder that is known to lie in the destination, or becomes it.
  [[nodiscard]] bool CopySubFolder(const std::wstring& target, const CPlace& place,
                                   const std::wstring& source, bool source_is_link,
                                   const CopyOptions& options, std::optional<CHeldFolder>& first);
  void DeleteExistingFolder(const std::wstring& target, const std::wstring& source,
                            const CopyOptions& options);
  void Announce(const std::wstring& destination, const std::wstring& source,
                const CopyOptions& options) const;
  // Notes and logs what could not be copied and why; always false.
  bool Fail(const std::wstring& path, DWORD error, const CopyOptions& options);

  const ProductFolders& folders_;
  CLog log_;
  std::wstring& last_failed_path_;
  CFolderRemoval removal_;  // a new one for each copy
};

}  // namespace nhupdate
