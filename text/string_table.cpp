#include "text/string_table.h"

#include <optional>
#include <tuple>

#include "text/json_reader.h"
#include "text/json_value.h"
#include "text/string_file.h"

namespace nhupdate {

namespace {

void AddTexts(const JsonValue& root, StringTable& strings) {
  const JsonValue::Object* members = root.AsObject();
  if (members == nullptr) {
    return;
  }
  for (const auto& [key, value] : *members) {
    const std::wstring* text = value.AsString();
    if (!key.empty() && text != nullptr && !text->empty()) {
      strings.insert_or_assign(key, *text);
    }
  }
}

}  // namespace

void LoadStrings(StringTable& strings, const std::wstring& path, const CLog& log) {
  log.Write(LogLevel::kInformation, L"Load strings from %s", path);
  std::optional<StringFileText> file = ReadStringFile(path);
  if (!file) {
    log.Write(LogLevel::kError, L"Fail to open string file : %s", path);
    return;
  }
  // The bound is that of the bytes, of which there may be more than units. That does no harm, since
  // the reader ends at the text's terminator.
  JsonValue root;
  std::ignore = ParseValue(root, file->text.c_str(), file->byte_count);  // a failure leaves it Null
  file.reset();  // so that a large text isn't there three times
  AddTexts(root, strings);
  log.Write(LogLevel::kInformation, L"Total %d strings loaded.", static_cast<int>(strings.size()));
  FreeValue(root);
}

std::wstring GetString(const StringTable& strings, const std::wstring& key) {
  const auto found = strings.find(key);
  return found == strings.end() ? key : found->second;
}

}  // namespace nhupdate
