#include "tests/stand_ins/support/copy_tree.h"

#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_stand_in {

namespace {

void CreateFolders(const std::wstring& folder) {
  const std::wstring parent = nhupdate::ParentFolder(folder);
  if (parent.find(L'\\') != std::wstring::npos) {
    CreateFolders(parent);
  }
  ::CreateDirectoryW(folder.c_str(), nullptr);
}

}  // namespace

bool CopyTree(const std::wstring& source, const std::wstring& destination) {
  CreateFolders(destination);
  WIN32_FIND_DATAW entry = {};
  const nhupdate::UniqueHandle<nhupdate::FindHandleTraits> search(
      ::FindFirstFileW((source + L"\\*").c_str(), &entry));
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
