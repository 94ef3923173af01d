#include "tests/stand_ins/support/copy_tree.h"

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_stand_in {

bool CopyTree(const std::wstring& source, const std::wstring& destination) {
  ::CreateDirectoryW(destination.c_str(), nullptr);
  WIN32_FIND_DATAW entry = {};
  const nhupdate::UniqueFindHandle search(::FindFirstFileW((source + L"\\*").c_str(), &entry));
  if (!search.IsValid()) {
    return false;
  }
  do {
    const std::wstring name = entry.cFileName;
    if (name == L"." || name == L"..") {
      continue;
    }
    const std::wstring from = source + L"\\" + name;
    const std::wstring to = destination + L"\\" + name;
    const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (is_folder ? !CopyTree(from, to) : !::CopyFileW(from.c_str(), to.c_str(), FALSE)) {
      return false;
    }
  } while (::FindNextFileW(search.Get(), &entry));
  return true;
}

}  // namespace nhupdate_stand_in
