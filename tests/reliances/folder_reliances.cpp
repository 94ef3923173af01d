// Making, moving and listing folders.

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

std::string MakeError(const std::wstring& folder) {
  return ErrorOf(::CreateDirectoryW(folder.c_str(), nullptr) != FALSE);
}

std::string MoveError(const std::wstring& from, const std::wstring& to) {
  return ErrorOf(::MoveFileW(from.c_str(), to.c_str()) != FALSE);
}

std::string ListError(const std::wstring& pattern) {
  WIN32_FIND_DATAW entry = {};
  const nhupdate::UniqueFindHandle search(::FindFirstFileW(pattern.c_str(), &entry));
  return ErrorOf(search.IsValid());
}

}  // namespace

Reliances FolderReliances() {
  return {
      {"CreateDirectoryW, a folder that is there", "183", Wine::kAsWindows,
       [](const std::wstring& folder) { return MakeError(folder); }},
      {"CreateDirectoryW, where a file is", "183", Wine::kAsWindows,
       [](const std::wstring& folder) { return MakeError(MakeFile(folder + L"\\file.txt")); }},
      {"CreateDirectoryW, in a missing folder", "3", Wine::kAsWindows,
       [](const std::wstring& folder) { return MakeError(folder + L"\\none\\folder"); }},
      {"CreateDirectoryW, a path of 250 units", "206", Wine::kDiffers,
       [](const std::wstring& folder) {
         constexpr std::size_t kNoFolder = 250;
         constexpr std::size_t kRoomForName = 100;
         std::wstring parent = folder;
         while (parent.size() + kRoomForName < kNoFolder) {
           parent += L"\\folder";
           MakeFolder(parent);
         }
         return MakeError(parent + L"\\" + std::wstring(kNoFolder - 1 - parent.size(), L'a'));
       }},
      {"MoveFileW, a folder that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring held_folder = MakeFolder(folder + L"\\folder");
         const nhupdate::UniqueFile held = HoldFolder(held_folder);
         return MoveError(held_folder, folder + L"\\other");
       }},
      {"MoveFileW, the parent of a folder that is held", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring parent = MakeFolder(folder + L"\\parent");
         const nhupdate::UniqueFile held = HoldFolder(MakeFolder(parent + L"\\folder"));
         return MoveError(parent, folder + L"\\other");
       }},
      {"FindFirstFileW, in a missing folder", "3", Wine::kAsWindows,
       [](const std::wstring& folder) { return ListError(folder + L"\\none\\*"); }},
      {"FindFirstFileW, in a file", "267", Wine::kDiffers,
       [](const std::wstring& folder) {
         return ListError(MakeFile(folder + L"\\file.txt") + L"\\*");
       }},
      {"FindFirstFileW, nothing of that name", "2", Wine::kAsWindows,
       [](const std::wstring& folder) { return ListError(folder + L"\\none*"); }},
      {"FindFirstFileW, a path of 300 units", "3", Wine::kDiffers,
       [](const std::wstring& folder) { return ListError(MakeLongFolder(folder) + L"\\*"); }},
      {"FindFirstFileW, the first entry of an empty folder", ".", Wine::kAsWindows,
       [](const std::wstring& folder) -> std::string {
         WIN32_FIND_DATAW entry = {};
         const nhupdate::UniqueFindHandle search(
             ::FindFirstFileW((folder + L"\\*").c_str(), &entry));
         return entry.cFileName == std::wstring(L".") ? "." : "another";
       }},
      {"FindNextFileW, behind the last entry", "18", Wine::kAsWindows,
       [](const std::wstring& folder) {
         WIN32_FIND_DATAW entry = {};
         const nhupdate::UniqueFindHandle search(
             ::FindFirstFileW((folder + L"\\*").c_str(), &entry));
         ::FindNextFileW(search.Get(), &entry);
         return ErrorOf(::FindNextFileW(search.Get(), &entry) != FALSE);
       }},
      {"FindFirstFileW, the name of a file that is asked for in other letters", "File.txt",
       Wine::kAsWindows,
       [](const std::wstring& folder) -> std::string {
         MakeFile(folder + L"\\File.txt");
         WIN32_FIND_DATAW entry = {};
         const nhupdate::UniqueFindHandle search(
             ::FindFirstFileW((folder + L"\\FILE.TXT").c_str(), &entry));
         return entry.cFileName == std::wstring(L"File.txt") ? "File.txt" : "another";
       }},
  };
}

}  // namespace nhupdate_test
