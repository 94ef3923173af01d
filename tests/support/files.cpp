#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

namespace {

struct Entry {
  std::wstring name;
  bool is_folder = false;
  bool is_link = false;
};

// Doesn't use the program's own listing, since these functions serve to test that. A folder that
// isn't there has no entries.
std::vector<Entry> EntriesOf(const std::wstring& folder) {
  std::vector<Entry> entries;
  WIN32_FIND_DATAW found = {};
  const nhupdate::UniqueFindHandle search(::FindFirstFileW((folder + L"\\*").c_str(), &found));
  if (!search.IsValid()) {
    const DWORD error = ::GetLastError();
    EXPECT_TRUE(error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND)
        << "Can't list " << testing::PrintToString(folder) << ": " << error;
    return entries;
  }
  do {
    const std::wstring name = found.cFileName;
    if (name != L"." && name != L"..") {
      entries.push_back({name, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                         (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0});
    }
  } while (::FindNextFileW(search.Get(), &found));
  const DWORD error = ::GetLastError();
  EXPECT_EQ(error, static_cast<DWORD>(ERROR_NO_MORE_FILES)) << testing::PrintToString(folder);
  return entries;
}

void AddTree(const std::wstring& folder, const std::wstring& prefix,
             std::vector<std::wstring>& tree) {
  for (const Entry& entry : EntriesOf(folder)) {
    const std::wstring relative = prefix + entry.name;
    tree.push_back(entry.is_folder ? relative + L"\\" : relative);
    if (entry.is_folder && !entry.is_link) {
      AddTree(folder + L"\\" + entry.name, relative + L"\\", tree);
    }
  }
}

nhupdate::UniqueFile CreateAlone(const std::wstring& path) {
  return nhupdate::UniqueFile(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Few files are read-only, so that is only seen to when one can't be deleted.
void RemoveFile(const std::wstring& path) {
  const BOOL is_deleted = ::DeleteFileW(path.c_str());
  const DWORD error = ::GetLastError();
  if (!is_deleted && error == ERROR_ACCESS_DENIED) {
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    ::DeleteFileW(path.c_str());
  }
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

// Here and for files nothing is asked beforehand: mostly it goes well, and tests lay out many.
void CreateFolders(const std::wstring& folder) {
  const BOOL is_created = ::CreateDirectoryW(folder.c_str(), nullptr);
  const DWORD error = ::GetLastError();
  const std::wstring parent = nhupdate::ParentFolder(folder);
  if (!is_created && error == ERROR_PATH_NOT_FOUND && parent.find(L'\\') != std::wstring::npos) {
    CreateFolders(parent);
    ::CreateDirectoryW(folder.c_str(), nullptr);
  }
  EXPECT_TRUE(is_created || IsFolder(folder))
      << "Can't create " << testing::PrintToString(folder) << ": " << error;
}

void WriteFileBytes(const std::wstring& path, const std::string& bytes) {
  nhupdate::UniqueFile file = CreateAlone(path);
  const DWORD error = ::GetLastError();
  if (!file.IsValid() && error == ERROR_PATH_NOT_FOUND) {
    CreateFolders(nhupdate::ParentFolder(path));
    file = CreateAlone(path);
  }
  DWORD written = 0;
  const bool is_written =
      file.IsValid() &&
      (bytes.empty() ||
       ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  EXPECT_TRUE(is_written && written == bytes.size())
      << "Can't write " << testing::PrintToString(path);
}

void AppendFileBytes(const std::wstring& path, const std::string& bytes) {
  const nhupdate::UniqueFile file(::CreateFileW(
      path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  EXPECT_TRUE(
      ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

std::string ReadFileBytes(const std::wstring& path) {
  const nhupdate::UniqueFile file(::CreateFileW(
      path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size = {};
  if (!file.IsValid() || !::GetFileSizeEx(file.Get(), &size)) {
    const DWORD error = ::GetLastError();
    ADD_FAILURE() << "Can't read " << testing::PrintToString(path) << ": " << error;
    return {};
  }
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  const BOOL is_read =
      ::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  const DWORD error = ::GetLastError();
  if (!is_read || read != bytes.size()) {
    ADD_FAILURE() << "Read " << read << " of " << bytes.size() << " bytes of "
                  << testing::PrintToString(path) << ", error " << error;
    return {};
  }
  return bytes;
}

std::vector<std::wstring> ListTree(const std::wstring& folder) {
  std::vector<std::wstring> tree;
  AddTree(folder, L"", tree);
  std::sort(tree.begin(), tree.end());
  return tree;
}

void RemoveTree(const std::wstring& folder) {
  for (const Entry& entry : EntriesOf(folder)) {
    const std::wstring path = folder + L"\\" + entry.name;
    if (!entry.is_folder) {
      RemoveFile(path);
    } else if (entry.is_link) {
      ::RemoveDirectoryW(path.c_str());
    } else {
      RemoveTree(path);
    }
  }
  ::RemoveDirectoryW(folder.c_str());
}

std::wstring LongPathBelow(const std::wstring& folder) {
  return folder + L"\\" + std::wstring(200, L'a') + L"\\" + std::wstring(100, L'b');
}

std::wstring TestProgramFolder() {
  std::array<wchar_t, MAX_PATH> path = {};
  ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return nhupdate::ParentFolder(path.data());
}

}  // namespace nhupdate_test
