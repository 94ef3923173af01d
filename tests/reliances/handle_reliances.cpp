// What is known of an open file, and done through its handle: place, attributes, name, appending.

#include <cstddef>
#include <cstring>
#include <tuple>

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kKernelForm = FILE_NAME_NORMALIZED | VOLUME_NAME_NT;

nhupdate::UniqueFile LookAt(const std::wstring& path) {
  return Open(path, FILE_READ_ATTRIBUTES, kShareAll, FILE_FLAG_BACKUP_SEMANTICS);
}

std::wstring FinalPath(const std::wstring& path, DWORD form) {
  const nhupdate::UniqueFile opened = LookAt(path);
  std::wstring final_path(1024, L'\0');
  final_path.resize(::GetFinalPathNameByHandleW(opened.Get(), final_path.data(),
                                                static_cast<DWORD>(final_path.size()), form));
  return final_path;
}

std::wstring RootOf(const std::wstring& folder) {
  return folder.substr(0, folder.find(L'\\') + 1);
}

std::string Rename(const nhupdate::UniqueFile& file, const std::wstring& new_path) {
  const std::size_t name_bytes = new_path.size() * sizeof(wchar_t);
  std::vector<char> buffer(sizeof(FILE_RENAME_INFO) + name_bytes);
  FILE_RENAME_INFO information = {};
  information.FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(buffer.data(), &information, sizeof(information));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), new_path.c_str(),
              name_bytes + sizeof(wchar_t));
  return ErrorOf(::SetFileInformationByHandle(file.Get(), FileRenameInfo, buffer.data(),
                                              static_cast<DWORD>(buffer.size())) != FALSE);
}

nhupdate::UniqueFile OpenForAppending(const std::wstring& path) {
  return nhupdate::UniqueFile(::CreateFileW(path.c_str(),
                                            FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE,
                                            kShareAll, nullptr, OPEN_ALWAYS, 0, nullptr));
}

void Append(const nhupdate::UniqueFile& file, const char* text) {
  DWORD written = 0;
  ::WriteFile(file.Get(), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

}  // namespace

Reliances HandleReliances() {
  return {
      {"FileAttributeTagInfo, a plain folder (87 on FAT and exFAT)", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile opened = LookAt(folder);
         FILE_ATTRIBUTE_TAG_INFO information = {};
         return ErrorOf(::GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo,
                                                       &information, sizeof(information)) != FALSE);
       }},
      {"FileStandardInfo, the names of a file with a hard link", "2", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         ::CreateHardLinkW((folder + L"\\link.txt").c_str(), file.c_str(), nullptr);
         const nhupdate::UniqueFile opened = LookAt(file);
         FILE_STANDARD_INFO information = {};
         ::GetFileInformationByHandleEx(opened.Get(), FileStandardInfo, &information,
                                        sizeof(information));
         return std::to_string(information.NumberOfLinks);
       }},
      {"GetFinalPathNameByHandleW, does the kernel's form begin with \\Device\\", "yes",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         return YesOrNo(FinalPath(folder, kKernelForm).starts_with(L"\\Device\\"));
       }},
      {"GetFinalPathNameByHandleW, does the usual form begin with \\\\?\\", "yes", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return YesOrNo(
             FinalPath(folder, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS).starts_with(L"\\\\?\\"));
       }},
      {"GetFinalPathNameByHandleW, does a drive's root end with a backslash", "yes",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         return YesOrNo(FinalPath(RootOf(folder), kKernelForm).ends_with(L'\\'));
       }},
      {"GetFinalPathNameByHandleW, does a folder end with a backslash", "no", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return YesOrNo(FinalPath(folder + L"\\", kKernelForm).ends_with(L'\\'));
       }},
      {"GetFinalPathNameByHandleW, a file that was opened in other letters", "File.txt",
       Wine::kAsWindows,
       [](const std::wstring& folder) -> std::string {
         MakeFile(folder + L"\\File.txt");
         const std::wstring path = FinalPath(folder + L"\\FILE.TXT", kKernelForm);
         return path.ends_with(L"\\File.txt") ? "File.txt" : "another";
       }},
      {"GetFinalPathNameByHandleW, units that it asks for beyond the path itself", "1",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile opened = LookAt(folder);
         const DWORD needed = ::GetFinalPathNameByHandleW(opened.Get(), nullptr, 0, kKernelForm);
         return std::to_string(needed - FinalPath(folder, kKernelForm).size());
       }},
      {"GetFinalPathNameByHandleW, does it tell a path of 300 units", "yes", Wine::kDiffers,
       [](const std::wstring& folder) {
         return YesOrNo(!FinalPath(WithPrefix(MakeLongFolder(folder)), kKernelForm).empty());
       }},
      {"FileRenameInfo, to a free name", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return Rename(Open(MakeFile(folder + L"\\file.txt"), DELETE, kShareAll),
                       folder + L"\\other.txt");
       }},
      {"FileRenameInfo, to the name of another file", "183", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return Rename(Open(MakeFile(folder + L"\\file.txt"), DELETE, kShareAll),
                       MakeFile(folder + L"\\other.txt"));
       }},
      {"FileRenameInfo, where does another's handle write afterwards", "other.txt",
       Wine::kAsWindows,
       [](const std::wstring& folder) -> std::string {
         const nhupdate::UniqueFile writer = OpenForAppending(folder + L"\\file.txt");
         std::ignore =
             Rename(Open(folder + L"\\file.txt", DELETE, kShareAll), folder + L"\\other.txt");
         Append(writer, "behind");
         return Content(folder + L"\\other.txt") == "behind" ? "other.txt" : "elsewhere";
       }},
      {"CreateFileW for a rename, a file that a reader has open without sharing deletion", "32",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = MakeFile(folder + L"\\file.txt");
         const nhupdate::UniqueFile reader =
             Open(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
         return ErrorOf(Open(file, DELETE, kShareAll));
       }},
      {"CreateFileW without write sharing, a file that another has open for appending", "32",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile writer = OpenForAppending(folder + L"\\file.txt");
         return ErrorOf(
             Open(folder + L"\\file.txt", FILE_READ_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE));
       }},
      {"FILE_APPEND_DATA, what two handles have written in turns", "1a2b3c", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring file = folder + L"\\file.txt";
         {
           const nhupdate::UniqueFile first = OpenForAppending(file);
           const nhupdate::UniqueFile second = OpenForAppending(file);
           Append(first, "1");
           Append(second, "a");
           Append(first, "2");
           Append(second, "b");
           Append(first, "3");
           Append(second, "c");
         }
         return Content(file);
       }},
      {"FILE_APPEND_DATA, reading by that handle", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile file = OpenForAppending(folder + L"\\file.txt");
         char byte = 0;
         DWORD read = 0;
         return ErrorOf(::ReadFile(file.Get(), &byte, sizeof(byte), &read, nullptr) != FALSE);
       }},
      {"ReOpenFile, reading what is open for appending", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile file = OpenForAppending(folder + L"\\file.txt");
         return ErrorOf(
             nhupdate::UniqueFile(::ReOpenFile(file.Get(), FILE_READ_DATA, kShareAll, 0)));
       }},
      {"FlushFileBuffers, a file that is open for appending", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const nhupdate::UniqueFile file = OpenForAppending(folder + L"\\file.txt");
         Append(file, "text");
         return ErrorOf(::FlushFileBuffers(file.Get()) != FALSE);
       }},
      {"WriteFile, a pipe that nobody reads", "232", Wine::kAsWindows,
       [](const std::wstring&) {
         nhupdate::UniqueKernelHandle reader;
         nhupdate::UniqueKernelHandle writer;
         ::CreatePipe(reader.Receive(), writer.Receive(), nullptr, 0);
         reader.Reset();
         DWORD written = 0;
         return ErrorOf(::WriteFile(writer.Get(), "x", 1, &written, nullptr) != FALSE);
       }},
  };
}

}  // namespace nhupdate_test
