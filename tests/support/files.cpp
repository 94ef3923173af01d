#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "base/folder_listing.h"
#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

namespace {

void AddTree(const std::wstring& folder, const std::wstring& prefix,
             std::vector<std::wstring>& entries) {
  nhupdate::CFolderListing listing(folder + L"\\*");
  while (listing.Next()) {
    const std::wstring relative = prefix + listing.Name();
    if (!listing.IsFolder()) {
      entries.push_back(relative);
      continue;
    }
    entries.push_back(relative + L"\\");
    if (!listing.IsLink()) {
      AddTree(folder + L"\\" + listing.Name(), relative + L"\\", entries);
    }
  }
}

}  // namespace

void CreateFolders(const std::wstring& folder) {
  const std::wstring parent = nhupdate::ParentFolder(folder);
  if (parent.find(L'\\') != std::wstring::npos) {
    CreateFolders(parent);
  }
  ::CreateDirectoryW(folder.c_str(), nullptr);
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

std::string ReadFileBytes(const std::wstring& path) {
  const nhupdate::UniqueFile file(::CreateFileW(
      path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size = {};
  if (!file.IsValid() || !::GetFileSizeEx(file.Get(), &size)) {
    ADD_FAILURE() << "Can't read " << testing::PrintToString(path);
    return {};
  }
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  ::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  bytes.resize(read);
  return bytes;
}

std::vector<std::wstring> ListTree(const std::wstring& folder) {
  std::vector<std::wstring> entries;
  AddTree(folder, L"", entries);
  std::sort(entries.begin(), entries.end());
  return entries;
}

void RemoveTree(const std::wstring& folder) {
  nhupdate::CFolderListing listing(folder + L"\\*");
  while (listing.Next()) {
    const std::wstring entry = folder + L"\\" + listing.Name();
    if (!listing.IsFolder()) {
      ::SetFileAttributesW(entry.c_str(), FILE_ATTRIBUTE_NORMAL);
      ::DeleteFileW(entry.c_str());
    } else if (listing.IsLink()) {
      ::RemoveDirectoryW(entry.c_str());
    } else {
      RemoveTree(entry);
    }
  }
  ::RemoveDirectoryW(folder.c_str());
}

std::wstring TestProgramFolder() {
  std::array<wchar_t, MAX_PATH> path = {};
  ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return nhupdate::ParentFolder(path.data());
}

}  // namespace nhupdate_test
