#include "log_library/record_text.h"

#include <cstddef>

#include "log_library/record_level.h"
#include "log_library/utf8_encoding.h"

namespace nhupdate {

namespace {

constexpr std::size_t kLevelWidth = 5;
constexpr std::string_view kFurtherLine = "\n    ";
constexpr char32_t kControlPictures = 0x2400;
constexpr char32_t kDeletePicture = 0x2421;

std::string LevelName(int level) {
  switch (level) {
    case kDebugLevel:
      return "DEBUG";
    case kInformationLevel:
      return "INFO";
    case kWarningLevel:
      return "WARN";
    case kErrorLevel:
      return "ERROR";
    default:
      return std::to_string(level);
  }
}

char32_t Printable(char32_t character) {
  if (character < 0x20) {
    return kControlPictures + character;
  }
  if (character == 0x7F) {
    return kDeletePicture;
  }
  const bool ends_lines_somewhere =
      (character >= 0x80 && character <= 0x9F) || character == 0x2028 || character == 0x2029;
  return ends_lines_somewhere ? kReplacementCharacter : character;
}

char32_t PrintableInTag(char32_t character) {
  switch (character) {
    case U'[':
      return U'(';
    case U']':
      return U')';
    default:
      return Printable(character);
  }
}

void AppendTag(std::string& record, std::wstring_view tag) {
  for (std::size_t position = 0; position < tag.size();) {
    AppendUtf8(record, PrintableInTag(NextCharacter(tag, position)));
  }
}

void AppendText(std::string& record, std::wstring_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = NextCharacter(text, position);
    if (character == U'\r' || character == U'\n') {
      if (character == U'\r' && position < text.size() && text[position] == L'\n') {
        ++position;
      }
      record += kFurtherLine;
    } else if (character == U'\t') {
      record += '\t';
    } else {
      AppendUtf8(record, Printable(character));
    }
  }
}

}  // namespace

std::string FormatRecord(const RecordOrigin& origin, int level, std::wstring_view tag,
                         std::wstring_view text) {
  std::string level_name = LevelName(level);
  if (level_name.size() < kLevelWidth) {
    level_name.resize(kLevelWidth, ' ');
  }
  std::string record = FormatRecordTime(origin.time) + " [" + std::to_string(origin.process_id) +
                       ":" + std::to_string(origin.thread_id) + "] " + level_name + " [";
  record.reserve(record.size() + tag.size() + text.size() + kFurtherLine.size());
  AppendTag(record, tag);
  record += "] ";
  AppendText(record, text);
  record += '\n';
  return record;
}

}  // namespace nhupdate
