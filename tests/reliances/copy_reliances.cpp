// CopyFileW.

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

std::string CopyError(const std::wstring& source, const std::wstring& target) {
  return ErrorOf(::CopyFileW(source.c_str(), target.c_str(), FALSE) != FALSE);
}

std::string AttributesOfCopy(const std::wstring& folder, DWORD attribute) {
  const std::wstring source = MakeFile(folder + L"\\source.txt", "new", attribute);
  const std::wstring target = folder + L"\\target.txt";
  if (!::CopyFileW(source.c_str(), target.c_str(), FALSE)) {
    GiveUp("copy to", target);
  }
  return YesOrNo((::GetFileAttributesW(target.c_str()) & attribute) != 0);
}

FILETIME TimeOf(const std::wstring& file) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data)) {
    GiveUp("look at", file);
  }
  return data.ftLastWriteTime;
}

}  // namespace

Reliances CopyReliances() {
  return {
      {"CopyFileW, a source that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring source = MakeFile(folder + L"\\source.txt");
         const nhupdate::UniqueFile held = HoldFile(source);
         return CopyError(source, folder + L"\\target.txt");
       }},
      {"CopyFileW, a target that is held", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring target = MakeFile(folder + L"\\target.txt");
         const nhupdate::UniqueFile held = HoldFile(target);
         return CopyError(MakeFile(folder + L"\\source.txt"), target);
       }},
      {"CopyFileW, a read-only target", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         return CopyError(MakeFile(folder + L"\\source.txt"),
                          MakeFile(folder + L"\\target.txt", "old", FILE_ATTRIBUTE_READONLY));
       }},
      {"CopyFileW, a hidden target", "5", Wine::kDiffers,
       [](const std::wstring& folder) {
         return CopyError(MakeFile(folder + L"\\source.txt"),
                          MakeFile(folder + L"\\target.txt", "old", FILE_ATTRIBUTE_HIDDEN));
       }},
      {"CopyFileW, a folder as the target", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return CopyError(MakeFile(folder + L"\\source.txt"), MakeFolder(folder + L"\\target"));
       }},
      {"CopyFileW, a folder as the source", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return CopyError(MakeFolder(folder + L"\\source"), folder + L"\\target");
       }},
      {"CopyFileW, a missing source", "2", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return CopyError(folder + L"\\none.txt", folder + L"\\target.txt");
       }},
      {"CopyFileW, a target in a missing folder", "3", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return CopyError(MakeFile(folder + L"\\source.txt"), folder + L"\\none\\target.txt");
       }},
      {"CopyFileW, does the read-only attribute come along", "yes", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return AttributesOfCopy(folder, FILE_ATTRIBUTE_READONLY);
       }},
      {"CopyFileW, does the hidden attribute come along", "yes", Wine::kDiffers,
       [](const std::wstring& folder) { return AttributesOfCopy(folder, FILE_ATTRIBUTE_HIDDEN); }},
      {"CopyFileW, does the time of the last change come along", "yes", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring source = MakeFile(folder + L"\\source.txt");
         const std::wstring target = folder + L"\\target.txt";
         {
           const FILETIME long_ago = {0, 0x01C0'0000};
           const nhupdate::UniqueFile file = Open(source, FILE_WRITE_ATTRIBUTES, kShareAll);
           ::SetFileTime(file.Get(), nullptr, nullptr, &long_ago);
         }
         ::CopyFileW(source.c_str(), target.c_str(), FALSE);
         const FILETIME expected = TimeOf(source);
         const FILETIME copied = TimeOf(target);
         return YesOrNo(::CompareFileTime(&expected, &copied) == 0);
       }},
  };
}

}  // namespace nhupdate_test
