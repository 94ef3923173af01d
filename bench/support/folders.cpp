#include "bench/support/folders.h"

#include <cstddef>
#include <string>

#include "base/windows.h"
#include "bench/support/pairs.h"

namespace nhupdate_bench {

namespace {

std::string Narrow(const std::wstring& text) {
  return {text.begin(), text.end()};
}

// Calls `visit` for each entry but the two dots.
template <typename Visit>
void ForEachEntry(const std::wstring& folder, Visit visit) {
  WIN32_FIND_DATAW entry = {};
  const HANDLE listing = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (listing == INVALID_HANDLE_VALUE) {
    GiveUp("Can't list " + Narrow(folder));
  }
  do {
    const std::wstring name = entry.cFileName;
    if (name != L"." && name != L"..") {
      visit(folder + L"\\" + name, name, (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    }
  } while (::FindNextFileW(listing, &entry));
  ::FindClose(listing);
}

void WriteNewFile(const std::wstring& path, const std::string& bytes) {
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  if (file == INVALID_HANDLE_VALUE ||
      !::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
    GiveUp("Can't write " + Narrow(path));
  }
  ::CloseHandle(file);
}

std::wstring NewScratchPath(const std::wstring& parent) {
  LARGE_INTEGER now = {};
  ::QueryPerformanceCounter(&now);
  return parent + L"\\bench " + std::to_wstring(::GetCurrentProcessId()) + L"-" +
         std::to_wstring(now.QuadPart);
}

}  // namespace

std::wstring TemporaryFolder() {
  wchar_t temporary[MAX_PATH + 1] = {};
  const DWORD length = ::GetTempPathW(MAX_PATH + 1, temporary);
  if (length == 0) {
    GiveUp("There is no temporary folder.");
  }
  return {temporary, length - 1};  // without the backslash at its end
}

std::vector<TreePlace> TreePlaces() {
  std::vector<TreePlace> places = {{"", "", TemporaryFolder()}};
  wchar_t memory[MAX_PATH] = {};
  if (::GetEnvironmentVariableW(L"NHUPDATE_MEMORY_FOLDER", memory, MAX_PATH) != 0) {
    places.push_back({"_in_memory", ", in memory", memory});
  }
  return places;
}

ScratchFolder::ScratchFolder(const std::wstring& parent) : path_(NewScratchPath(parent)) {
  MakeFolder(path_);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(path_);
}

void MakeFolder(const std::wstring& folder) {
  if (!::CreateDirectoryW(folder.c_str(), nullptr)) {
    GiveUp("Can't make " + Narrow(folder));
  }
}

void MakeTree(const std::wstring& folder, const TreeShape& shape) {
  const std::string content(static_cast<std::size_t>(shape.file_bytes), 'x');
  MakeFolder(folder);
  for (int index = 0; index < shape.folders; ++index) {
    const std::wstring sub_folder = folder + L"\\folder" + std::to_wstring(index);
    MakeFolder(sub_folder);
    for (int file = 0; file < shape.files_in_each; ++file) {
      WriteNewFile(sub_folder + L"\\file" + std::to_wstring(file) + L".dat", content);
    }
  }
}

void RemoveTree(const std::wstring& folder) {
  if (::GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES) {
    return;
  }
  ForEachEntry(folder, [](const std::wstring& path, const std::wstring&, bool is_folder) {
    if (is_folder) {
      RemoveTree(path);
    } else if (!::DeleteFileW(path.c_str())) {
      GiveUp("Can't delete " + Narrow(path));
    }
  });
  if (!::RemoveDirectoryW(folder.c_str())) {
    GiveUp("Can't remove " + Narrow(folder));
  }
}

void CopyTree(const std::wstring& source, const std::wstring& target) {
  ForEachEntry(source, [&](const std::wstring& path, const std::wstring& name, bool is_folder) {
    const std::wstring copy = target + L"\\" + name;
    if (is_folder) {
      MakeFolder(copy);
      CopyTree(path, copy);
    } else if (!::CopyFileW(path.c_str(), copy.c_str(), FALSE)) {
      GiveUp("Can't copy " + Narrow(path));
    }
  });
}

int CountFolders(const std::wstring& folder) {
  int count = 0;
  ForEachEntry(folder, [&](const std::wstring& path, const std::wstring&, bool is_folder) {
    count += is_folder ? 1 + CountFolders(path) : 0;
  });
  return count;
}

}  // namespace nhupdate_bench
