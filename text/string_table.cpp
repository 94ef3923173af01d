#include "text/string_table.h"

#include <cstddef>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "app/manager_center.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "text/json_reader.h"
#include "text/utf8.h"

namespace nhupdate {

namespace {

constexpr char kUtf8Mark[] = {'\xEF', '\xBB', '\xBF'};
constexpr int kUtf8MarkBytes = sizeof(kUtf8Mark);

UniqueFile OpenForReading(const std::wstring& path) {
  return UniqueFile(::CreateFileW(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Reads the whole file in one go. A file that can't be read, or whose size the reader can't count
// (it needs one number more for the end), counts as empty: it holds no texts.
std::vector<char> ReadWhole(const UniqueFile& file) {
  LARGE_INTEGER size = {};
  if (!::GetFileSizeEx(file.Get(), &size) || size.QuadPart >= std::numeric_limits<int>::max()) {
    return {};
  }
  std::vector<char> bytes(static_cast<std::size_t>(size.QuadPart));
  DWORD read = 0;
  if (!::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
    return {};
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

struct FileText {
  std::wstring text;
  int byte_count = 0;
};

// Closes the file, and keeps nothing of its bytes: a text can be large.
FileText ReadText(UniqueFile file) {
  const std::vector<char> bytes = ReadWhole(file);
  file.Reset();
  return {Decode(bytes), static_cast<int>(bytes.size())};
}

void AddTexts(const JsonValue& root, StringTable& strings) {
  const JsonValue::Object* members = root.AsObject();
  if (members == nullptr) {
    return;
  }
  for (const auto& [key, value] : *members) {
    const std::wstring* text = value->AsString();
    if (!key.empty() && text != nullptr && !text->empty()) {
      strings.insert_or_assign(key, *text);
    }
  }
}

}  // namespace

void CManagerCenter::LoadStrings(const std::wstring& path) {
  Log(LogLevel::kInformation, L"Load strings from %s", path);
  UniqueFile file = OpenForReading(path);
  if (!file.IsValid()) {
    Log(LogLevel::kError, L"Fail to open string file : %s", path);
    return;
  }
  const auto [text, byte_count] = ReadText(std::move(file));

  // The bound counts bytes, which are never fewer than units: the text's terminator ends it.
  JsonValue root;
  std::ignore = ParseValue(root, text.c_str(), byte_count);  // the value's kind tells what was read
  AddTexts(root, strings_);
  Log(LogLevel::kInformation, L"Total %d strings loaded.", static_cast<int>(strings_.size()));
  FreeValue(root);
}

std::wstring CManagerCenter::GetString(const std::wstring& key) const {
  const auto found = strings_.find(key);
  return found == strings_.end() ? key : found->second;
}

}  // namespace nhupdate
