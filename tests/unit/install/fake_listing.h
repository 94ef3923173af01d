#pragma once

// Adds to what Windows says about real folders and their entries: what can't be made on every
// system. Deleting and copying happen for real, except for what a test takes over.

#include <map>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class FakeListing {
 public:
  FakeListing();

  // The folder or file is shown with these attributes on top of its own, and with that reparse tag.
  void Disguise(const std::wstring& path, DWORD attributes, DWORD reparse_tag);

  // Listing the folder fails with that error.
  void Forbid(const std::wstring& folder, DWORD error) { forbidden_[folder] = error; }

  // Listing the folder ends with that error after its first entry.
  void BreakOff(const std::wstring& folder, DWORD error) { broken_[folder] = error; }

  // The folder, once opened, turns out to be another one.
  void LeadElsewhere(const std::wstring& folder, const std::wstring& final_path) {
    final_paths_[folder] = final_path;
  }

  // Every pattern that was asked for.
  [[nodiscard]] const std::vector<std::wstring>& Patterns() const { return patterns_; }

 private:
  struct Look {
    DWORD attributes = 0;
    DWORD reparse_tag = 0;
  };

  void ApplyDisguise(const std::wstring& folder, WIN32_FIND_DATAW& entry) const;

  std::map<std::wstring, Look> disguises_;
  std::map<std::wstring, DWORD> forbidden_;
  std::map<std::wstring, DWORD> broken_;
  std::map<std::wstring, std::wstring> final_paths_;
  std::map<HANDLE, std::wstring> folders_;
  std::map<HANDLE, std::wstring> opened_;
  std::vector<std::wstring> patterns_;

  INTERPOSER(FindFirstFileW) find_first_;
  INTERPOSER(FindNextFileW) find_next_;
  INTERPOSER(CreateFileW) create_file_;
  INTERPOSER(GetFileInformationByHandleEx) information_;
  INTERPOSER(GetFinalPathNameByHandleW) final_path_;
};

}  // namespace nhupdate_test
