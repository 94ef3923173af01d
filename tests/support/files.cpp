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

// Asks Windows itself: the program's own listing is among what is tested with these functions. A
// folder that isn't there has no entries.
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

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

void CreateFolders(const std::wstring& folder) {
  if (IsFolder(folder)) {
    return;
  }
  const std::wstring parent = nhupdate::ParentFolder(folder);
  if (parent.find(L'\\') != std::wstring::npos) {
    CreateFolders(parent);
  }
  EXPECT_TRUE(::CreateDirectoryW(folder.c_str(), nullptr))
      << "Can't create " << testing::PrintToString(folder) << ": " << ::GetLastError();
}

void WriteFileBytes(const std::wstring& path, const std::string& bytes) {
  CreateFolders(nhupdate::ParentFolder(path));
  const nhupdate::UniqueFile file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  const bool is_written =
      file.IsValid() &&
      ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
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
      ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      ::DeleteFileW(path.c_str());
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
