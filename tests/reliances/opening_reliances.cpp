// Opening and looking at files: CreateFileW, GetFileAttributesW.

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

std::string AttributesError(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return ErrorOf(attributes != INVALID_FILE_ATTRIBUTES);
}

}  // namespace

Reliances OpeningReliances() {
  return {
      {"CreateFileW, a file that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile held = HoldFile(file);
         return ErrorOf(Open(file, GENERIC_READ, kShareAll));
       }},
      {"CreateFileW for attributes, a file that is held", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile held = HoldFile(file);
         return ErrorOf(Open(file, FILE_READ_ATTRIBUTES, kShareAll));
       }},
      {"CreateFileW for writing, a read-only file", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         return ErrorOf(Open(MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_READONLY),
                             GENERIC_WRITE, kShareAll));
       }},
      {"CreateFileW for deletion, a read-only file", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(Open(MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_READONLY),
                             DELETE, kShareAll));
       }},
      {"CreateFileW with CREATE_ALWAYS, a hidden file", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring file =
             MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_HIDDEN);
         return ErrorOf(
             nhupdate::UniqueFile(::CreateFileW(file.c_str(), GENERIC_WRITE, kShareAll, nullptr,
                                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)));
       }},
      {"CreateFileW with CREATE_NEW, a file that is there", "80", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         return ErrorOf(nhupdate::UniqueFile(::CreateFileW(
             file.c_str(), FILE_APPEND_DATA, kShareAll, nullptr, CREATE_NEW, 0, nullptr)));
       }},
      {"CreateFileW, a folder without FILE_FLAG_BACKUP_SEMANTICS", "5", Wine::kAsWindows,
       [](const std::wstring& folder) { return ErrorOf(Open(folder, GENERIC_READ, kShareAll)); }},
      {"CreateFileW, a folder with FILE_FLAG_BACKUP_SEMANTICS", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(Open(folder, FILE_LIST_DIRECTORY, kShareAll, FILE_FLAG_BACKUP_SEMANTICS));
       }},
      {"CreateFileW, a missing file", "2", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(Open(folder + L"\\none.txt", GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, a file in a missing folder", "3", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(Open(folder + L"\\none\\none.txt", GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, a path of 300 units", "3", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring file = MakeLongFolder(folder) + L"\\file.txt";
         MakeFile(WithPrefix(file));
         return ErrorOf(Open(file, GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, the same path behind \\\\?\\", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = WithPrefix(MakeLongFolder(folder) + L"\\file.txt");
         return ErrorOf(Open(MakeFile(file), GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, a name with a blank behind it", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(Open(MakeFile(folder + L"\\file.txt") + L" ", GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, the same name behind \\\\?\\", "2", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ErrorOf(
             Open(WithPrefix(MakeFile(folder + L"\\file.txt")) + L" ", GENERIC_READ, kShareAll));
       }},
      {"CreateFileW, a file in a folder, with two dots behind the name of one that has one", "0",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring exact = WithPrefix(folder + L"\\dotted.");
         ::CreateDirectoryW(exact.c_str(), nullptr);
         MakeFile(exact + L"\\file.txt");
         return ErrorOf(Open(folder + L"\\dotted..\\file.txt", GENERIC_READ, kShareAll));
       }},
      {"GetFileAttributesW, a missing file", "2", Wine::kAsWindows,
       [](const std::wstring& folder) { return AttributesError(folder + L"\\none.txt"); }},
      {"GetFileAttributesW, a path through a file", "3", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return AttributesError(MakeFile(folder + L"\\file.txt") + L"\\none.txt");
       }},
      {"GetFileAttributesW, a file that is held", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile held = HoldFile(file);
         return AttributesError(file);
       }},
  };
}

}  // namespace nhupdate_test
