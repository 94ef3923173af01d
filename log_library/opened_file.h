#pragma once

// What lies behind an open handle. Every user may write into the log folder while the writer may
// be elevated, so nothing there is taken for what its name says: it is opened without following a
// link and then looked at through the handle, which nobody can exchange any more.

#include <cstdint>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

// The same for two handles exactly when they belong to the same file.
struct FileIdentity {
  DWORD volume = 0;
  std::uint64_t index = 0;

  bool operator==(const FileIdentity&) const = default;
};

struct OpenedFile {
  FileIdentity identity;
  DWORD attributes = 0;
  DWORD name_count = 0;

  [[nodiscard]] bool IsLink() const { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
  [[nodiscard]] bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Opens the file or folder itself, even if it is a link. The handle is not inherited by child
// processes.
[[nodiscard]] UniqueFile OpenUnfollowed(const std::wstring& path, DWORD access, DWORD disposition,
                                        DWORD sharing);

// False when Windows doesn't tell.
[[nodiscard]] bool Inspect(const UniqueFile& file, OpenedFile& opened);

}  // namespace nhupdate
