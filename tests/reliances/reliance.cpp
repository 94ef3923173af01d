#include "tests/reliances/reliance.h"

#include <cstdio>
#include <cstdlib>

namespace nhupdate_test {

std::string ErrorOf(bool has_succeeded) {
  const DWORD error = ::GetLastError();
  return has_succeeded ? "0" : std::to_string(error);
}

std::string ErrorOf(const nhupdate::UniqueFile& opened) {
  return ErrorOf(opened.IsValid());
}

std::string YesOrNo(bool is_so) {
  return is_so ? "yes" : "no";
}

nhupdate::UniqueFile Open(const std::wstring& path, DWORD access, DWORD sharing, DWORD flags) {
  return nhupdate::UniqueFile(
      ::CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, flags, nullptr));
}

nhupdate::UniqueFile HoldFile(const std::wstring& file) {
  nhupdate::UniqueFile held = Open(file, GENERIC_READ | GENERIC_WRITE, 0);
  if (!held.IsValid()) {
    GiveUp("hold", file);
  }
  return held;
}

nhupdate::UniqueFile HoldFolder(const std::wstring& folder) {
  nhupdate::UniqueFile held = Open(folder, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   FILE_FLAG_BACKUP_SEMANTICS);
  if (!held.IsValid()) {
    GiveUp("hold", folder);
  }
  return held;
}

std::wstring MakeFile(const std::wstring& path, const std::string& bytes, DWORD attributes) {
  {
    const nhupdate::UniqueFile file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                                  CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (!file.IsValid() || !::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()),
                                        &written, nullptr)) {
      GiveUp("make the file", path);
    }
  }
  if (!::SetFileAttributesW(path.c_str(), attributes)) {
    GiveUp("set the attributes of", path);
  }
  return path;
}

std::wstring MakeFolder(const std::wstring& path) {
  if (!::CreateDirectoryW(path.c_str(), nullptr)) {
    GiveUp("make the folder", path);
  }
  return path;
}

std::string Content(const std::wstring& file) {
  const nhupdate::UniqueFile opened = Open(file, GENERIC_READ, kShareAll);
  std::string bytes(4096, '\0');
  DWORD read = 0;
  if (!opened.IsValid() ||
      !::ReadFile(opened.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
    GiveUp("read", file);
  }
  bytes.resize(read);
  return bytes;
}

std::wstring MakeLongFolder(const std::wstring& folder) {
  constexpr std::size_t kTooLong = 300;
  std::wstring deep = folder;
  while (deep.size() < kTooLong) {
    deep += L"\\a folder with a name that is rather long";
    MakeFolder(WithPrefix(deep));
  }
  return deep;
}

std::wstring WithPrefix(const std::wstring& path) {
  return L"\\\\?\\" + path;
}

void GiveUp(const char* what, const std::wstring& path) {
  const DWORD error = ::GetLastError();
  std::printf("Can't %s %ls: error %lu\n", what, path.c_str(), error);
  std::fflush(stdout);
  std::_Exit(2);
}

}  // namespace nhupdate_test
