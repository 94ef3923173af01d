#pragma once

// A link from one folder to another, as Windows treats it: Wine can neither make junctions nor tell
// a link from what it leads to when it is opened or deleted. An empty folder stands for the link;
// every path through it leads to the other folder, and whatever opens the link itself sees a
// reparse point. Once it is deleted its name is free for an ordinary folder.

#include <set>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class FakeLink {
 public:
  // Makes the link, in the place of an empty folder if there is one.
  FakeLink(const std::wstring& link, const std::wstring& target,
           DWORD tag = IO_REPARSE_TAG_MOUNT_POINT);

  // There is no link until the code under test uses a path, or a pattern of a listing, for which
  // `is_moment` returns true. Then the folder is moved away, as another process might do it, and
  // the link takes its place; as long as somebody holds the folder Windows refuses that, and there
  // is no link. With `stays_in_place` the empty folder itself becomes the link, which Windows
  // always allows.
  using Moment = std::function<bool(const std::wstring& path)>;
  FakeLink(const std::wstring& link, const std::wstring& target, Moment is_moment,
           bool stays_in_place = false);

  [[nodiscard]] bool IsThere() const { return is_there_; }

  // Deleting the link by its handle fails from now on; ERROR_SUCCESS allows it again.
  void RefuseDeletion(DWORD error) { deletion_error_ = error; }

 private:
  void LookAtMoment(const std::wstring& path);
  // Where the path leads. With `itself` a path that ends with the link stands for the link itself.
  [[nodiscard]] std::wstring Followed(const wchar_t* path, bool itself);
  void ShowIn(const std::wstring& folder, WIN32_FIND_DATAW& entry) const;
  BOOL Inform(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size);
  BOOL Set(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size);

  const std::wstring link_;
  const std::wstring target_;
  DWORD tag_ = IO_REPARSE_TAG_MOUNT_POINT;
  const bool stays_in_place_;
  Moment is_moment_;
  bool is_there_ = false;
  DWORD deletion_error_ = ERROR_SUCCESS;
  std::set<HANDLE> opened_itself_;
  std::map<HANDLE, std::wstring> listed_;

  INTERPOSER(FindFirstFileW) find_first_;
  INTERPOSER(FindNextFileW) find_next_;
  INTERPOSER(CreateFileW) create_file_;
  INTERPOSER(GetFileInformationByHandleEx) information_;
  INTERPOSER(SetFileInformationByHandle) set_information_;
  INTERPOSER(CopyFileW) copy_;
  INTERPOSER(CreateDirectoryW) create_folder_;
  INTERPOSER(DeleteFileW) delete_file_;
  INTERPOSER(RemoveDirectoryW) remove_folder_;
};

}  // namespace nhupdate_test
