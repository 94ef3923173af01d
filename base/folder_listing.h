#pragma once

// Walks the entries of one folder, in the order in which Windows lists them.

#include <memory>
#include <optional>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

// What stands behind a folder's name to mean all its entries.
inline constexpr wchar_t kAllEntries[] = L"\\*.*";

class CFolderListing {
 public:
  // A folder that can't be listed has no entries.
  explicit CFolderListing(const std::wstring& folder, const wchar_t* wildcard = kAllEntries);

  // Steps to the next entry, passing over "." and "..". Returns false at the end, and also when
  // Windows can't go on. The questions about an entry are about that of the last successful step.
  [[nodiscard]] bool Next();

  // Why the listing could not begin or broke off, so that there may be more in the folder than was
  // seen; nothing when it came to its end.
  [[nodiscard]] std::optional<DWORD> Error() const { return error_; }

  // True when the listing could not begin since there is no such folder, or a file in its place.
  [[nodiscard]] bool HasNoFolder() const { return has_no_folder_; }

  // True when the error came after at least one entry, even if that was only ".".
  [[nodiscard]] bool HasBrokenOff() const { return search_.IsValid() && error_.has_value(); }

  [[nodiscard]] std::wstring Name() const;
  [[nodiscard]] bool IsFolder() const;
  [[nodiscard]] bool IsReadOnly() const;
  [[nodiscard]] bool IsLink() const;  // see MeansLink in base/folder_place.h

 private:
  // On the heap: listings are nested as deep as the folders are.
  std::unique_ptr<WIN32_FIND_DATAW> entry_;
  UniqueFindHandle search_;
  bool is_first_ = true;
  std::optional<DWORD> error_;
  bool has_no_folder_ = false;
};

}  // namespace nhupdate
