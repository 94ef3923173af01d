#include "text/string_file.h"

#include <cstddef>
#include <limits>
#include <vector>

#include "base/existence.h"
#include "base/strings.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "base/windows_path.h"
#include "text/utf8.h"

namespace nhupdate {

namespace {

constexpr char kUtf8Mark[] = {'\xEF', '\xBB', '\xBF'};
constexpr int kUtf8MarkBytes = sizeof(kUtf8Mark);

std::wstring StringFilePath(const std::wstring& configuration_folder,
                            const std::wstring& language) {
  return configuration_folder + L"\\NHUpdateManager." + language + L".json";
}

UniqueFile OpenForReading(const std::wstring& path) {
  return UniqueFile(::CreateFileW(PathForWindows(path).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Nothing for a file that can't be read, or that is too large for the JSON reader: that counts in
// int, up to the position behind the last unit.
std::optional<std::vector<char>> ReadWhole(const UniqueFile& file) {
  LARGE_INTEGER size = {};
  if (!::GetFileSizeEx(file.Get(), &size) || size.QuadPart >= std::numeric_limits<int>::max()) {
    return std::nullopt;
  }
  std::vector<char> bytes(static_cast<std::size_t>(size.QuadPart));
  DWORD read = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
    return std::nullopt;
  }
  bytes.resize(read);
  return bytes;
}

std::wstring Decode(const std::vector<char>& bytes) {
  const int byte_count = static_cast<int>(bytes.size());
  const bool has_mark = byte_count >= kUtf8MarkBytes && bytes[0] == kUtf8Mark[0] &&
                        bytes[1] == kUtf8Mark[1] && bytes[2] == kUtf8Mark[2];
  return has_mark ? Utf8ToWide(bytes.data() + kUtf8MarkBytes, byte_count - kUtf8MarkBytes)
                  : Utf8ToWide(bytes.data(), byte_count);
}

}  // namespace

std::wstring ChooseStringFile(const std::wstring& configuration_folder,
                              const std::wstring& language) {
  std::wstring own = StringFilePath(configuration_folder, language);
  if (Exists(own)) {
    return own;
  }
  const std::size_t hyphen = language.find(L'-');
  if (hyphen != std::wstring::npos && hyphen > 0) {
    const std::wstring short_code = LeftPart(language, static_cast<int>(hyphen));
    std::wstring general = StringFilePath(configuration_folder, short_code);
    if (Exists(general)) {
      return general;
    }
  }
  return StringFilePath(configuration_folder, L"Default");
}

std::optional<StringFileText> ReadStringFile(const std::wstring& path) {
  UniqueFile file = OpenForReading(path);
  if (!file.IsValid()) {
    return std::nullopt;
  }
  const std::optional<std::vector<char>> bytes = ReadWhole(file);
  file.Reset();
  if (!bytes) {
    return std::nullopt;
  }
  return StringFileText{Decode(*bytes), static_cast<int>(bytes->size())};
}

}  // namespace nhupdate
