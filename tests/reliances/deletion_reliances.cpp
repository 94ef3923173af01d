// Deleting files and folders, by name and by handle.

#include <tuple>

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

std::string DeleteError(const std::wstring& path) {
  return ErrorOf(::DeleteFileW(path.c_str()) != FALSE);
}

std::string RemoveError(const std::wstring& path) {
  return ErrorOf(::RemoveDirectoryW(path.c_str()) != FALSE);
}

// As the program opens what it is going to delete.
nhupdate::UniqueFile OpenForDeletion(const std::wstring& path) {
  return Open(path, DELETE | FILE_READ_ATTRIBUTES, kShareAll,
              FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS);
}

std::string DeletePlainly(const nhupdate::UniqueFile& opened) {
  FILE_DISPOSITION_INFO plain = {TRUE};
  return ErrorOf(::SetFileInformationByHandle(opened.Get(), FileDispositionInfo, &plain,
                                              sizeof(plain)) != FALSE);
}

// FileDispositionInfoEx, with which a name goes at once.
std::string DeleteAtOnce(const nhupdate::UniqueFile& opened) {
  constexpr auto kDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
  constexpr DWORD kDeletePosixForceImageCheck = 0x1 | 0x2 | 0x4;
  DWORD flags = kDeletePosixForceImageCheck;
  return ErrorOf(::SetFileInformationByHandle(opened.Get(), kDispositionInfoEx, &flags,
                                              sizeof(flags)) != FALSE);
}

}  // namespace

Reliances DeletionReliances() {
  return {
      {"DeleteFileW, a file that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile held = HoldFile(file);
         return DeleteError(file);
       }},
      {"DeleteFileW, a read-only file", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return DeleteError(MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_READONLY));
       }},
      {"DeleteFileW, a hidden file", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return DeleteError(MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_HIDDEN));
       }},
      {"DeleteFileW, a folder", "5", Wine::kAsWindows,
       [](const std::wstring& folder) { return DeleteError(MakeFolder(folder + L"\\folder")); }},
      {"DeleteFileW, a missing file", "2", Wine::kAsWindows,
       [](const std::wstring& folder) { return DeleteError(folder + L"\\none.txt"); }},
      {"DeleteFileW, a file in a missing folder", "3", Wine::kAsWindows,
       [](const std::wstring& folder) { return DeleteError(folder + L"\\none\\none.txt"); }},
      {"RemoveDirectoryW, a folder that is not empty", "145", Wine::kAsWindows,
       [](const std::wstring& folder) {
         MakeFile(MakeFolder(folder + L"\\folder") + L"\\file.txt");
         return RemoveError(folder + L"\\folder");
       }},
      {"RemoveDirectoryW, a folder that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring held_folder = MakeFolder(folder + L"\\folder");
         const nhupdate::UniqueFile held = HoldFolder(held_folder);
         return RemoveError(held_folder);
       }},
      {"RemoveDirectoryW, the parent of a folder that is held", "145", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring parent = MakeFolder(folder + L"\\parent");
         const nhupdate::UniqueFile held = HoldFolder(MakeFolder(parent + L"\\folder"));
         return RemoveError(parent);
       }},
      {"RemoveDirectoryW, a read-only folder", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring read_only = MakeFolder(folder + L"\\folder");
         ::SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
         return RemoveError(read_only);
       }},
      {"FileDispositionInfoEx, a file that others have open", "0", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile reader = Open(file, GENERIC_READ, kShareAll);
         return DeleteAtOnce(OpenForDeletion(file));
       }},
      {"FileDispositionInfoEx, is the name free while others have the file open", "yes",
       Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile reader = Open(file, GENERIC_READ, kShareAll);
         std::ignore = DeleteAtOnce(OpenForDeletion(file));
         const nhupdate::UniqueFile again(::CreateFileW(file.c_str(), GENERIC_WRITE, kShareAll,
                                                        nullptr, CREATE_NEW, 0, nullptr));
         return YesOrNo(again.IsValid());
       }},
      {"FileDispositionInfo, a file that others have open", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile reader = Open(file, GENERIC_READ, kShareAll);
         return DeletePlainly(OpenForDeletion(file));
       }},
      {"FileDispositionInfo, opening the file again while others have it open", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile reader = Open(file, GENERIC_READ, kShareAll);
         std::ignore = DeletePlainly(OpenForDeletion(file));
         return ErrorOf(Open(file, GENERIC_READ, kShareAll));
       }},
      {"FileDispositionInfo, a read-only file", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return DeletePlainly(
             OpenForDeletion(MakeFile(folder + L"\\file.txt", "content", FILE_ATTRIBUTE_READONLY)));
       }},
      {"FileDispositionInfo, a folder that is not empty", "145", Wine::kAsWindows,
       [](const std::wstring& folder) {
         MakeFile(MakeFolder(folder + L"\\folder") + L"\\file.txt");
         return DeletePlainly(OpenForDeletion(folder + L"\\folder"));
       }},
  };
}

}  // namespace nhupdate_test
