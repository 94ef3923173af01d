#pragma once

// Changes what Windows says about folders and their entries, for states that can't be made on every
// system. What it isn't told to change is as it really is; deleting and copying happen for real.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

struct FakeEntry {
  const wchar_t* name;
  DWORD attributes = FILE_ATTRIBUTE_NORMAL;
  DWORD reparse_tag = 0;
};

class FakeListing {
 public:
  // Shows real folders, but for what is changed below.
  FakeListing();

  // Whatever folder is listed has these entries, each of which is given only once. Behind the last
  // one listing fails with the error; a listing that gets no entry at all can't even begin.
  explicit FakeListing(std::vector<FakeEntry> entries, DWORD end_error = ERROR_NO_MORE_FILES);

  // The folder or file is shown with these attributes on top of its own, and with that reparse tag.
  void Disguise(const std::wstring& path, DWORD attributes, DWORD reparse_tag) {
    disguises_[path] = {attributes, reparse_tag};
  }

  // Listing the folder fails with that error before its first entry.
  void Forbid(const std::wstring& folder, DWORD error) { forbidden_[folder] = error; }

  // Listing the folder ends with that error after its first entry.
  void BreakOff(const std::wstring& folder, DWORD error) { broken_[folder] = error; }

  // For the opened folder Windows names this final path, and one below it for what is opened below
  // the folder. With an empty path it fails to name one.
  void LeadElsewhere(const std::wstring& folder, const std::wstring& final_path) {
    final_paths_[folder] = final_path;
  }

  // Every pattern with which a listing was begun, in order.
  [[nodiscard]] const std::vector<std::wstring>& Patterns() const { return patterns_; }

  // How often a further entry was asked for, and how often a search was closed.
  [[nodiscard]] int Steps() const { return find_next_.Calls(); }
  [[nodiscard]] int Closed() const { return find_close_.Calls(); }

 private:
  struct Look {
    DWORD attributes = 0;
    DWORD reparse_tag = 0;
  };

  FakeListing(bool is_made_up, std::vector<FakeEntry> entries, DWORD end_error);

  HANDLE FindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* entry);
  BOOL FindNext(HANDLE search, WIN32_FIND_DATAW* entry);
  BOOL GiveMadeUp(WIN32_FIND_DATAW* entry);
  // The final path to be named for the path; nothing when Windows' own is left as it is.
  std::optional<std::wstring> FinalPathOf(const std::wstring& path) const;
  std::optional<DWORD> FinalPath(HANDLE file, wchar_t* buffer, DWORD units, DWORD flags);
  BOOL Inform(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size);
  void ApplyDisguise(const std::wstring& folder, WIN32_FIND_DATAW& entry) const;

  bool is_made_up_;
  std::vector<FakeEntry> made_up_;
  DWORD end_error_;
  std::size_t given_ = 0;  // how many of made_up_ were given out

  std::map<std::wstring, Look> disguises_;
  std::map<std::wstring, DWORD> forbidden_;
  std::map<std::wstring, DWORD> broken_;
  std::map<std::wstring, std::wstring> final_paths_;
  std::map<HANDLE, std::wstring> folders_;
  std::map<HANDLE, std::wstring> opened_;
  std::vector<std::wstring> patterns_;

  INTERPOSER(FindFirstFileW) find_first_;
  INTERPOSER(FindNextFileW) find_next_;
  INTERPOSER(FindClose) find_close_;
  INTERPOSER(CreateFileW) create_file_;
  INTERPOSER(GetFileInformationByHandleEx) information_;
  INTERPOSER(GetFinalPathNameByHandleW) final_path_;
};

}  // namespace nhupdate_test
