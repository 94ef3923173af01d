#include "log_library/record_text.h"

#include <algorithm>
#include <cstddef>

#include "log_library/record_level.h"
#include "log_library/utf8_encoding.h"

namespace nhupdate {

namespace {

constexpr std::size_t kLevelWidth = 5;
constexpr std::string_view kFurtherLine = "\n    ";
constexpr char32_t kControlPictures = 0x2400;
constexpr char32_t kDeletePicture = 0x2421;

// Room for all that stands before a tag and behind a text.
constexpr std::size_t kFrameBytes = 80;

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

bool IsPlain(wchar_t unit) {
  return unit >= 0x20 && unit < 0x7F;
}

// Appends what is one byte of the same value for each unit, as most of a text is, and no other
// character. Moves the position behind it.
void AppendPlain(std::string& record, std::wstring_view text, std::size_t& position) {
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(position);
  const auto end = std::find_if_not(begin, text.end(), IsPlain);
  const std::size_t old_size = record.size();
  const auto count = static_cast<std::size_t>(end - begin);
  record.resize(old_size + count);
  std::transform(begin, end, record.begin() + static_cast<std::ptrdiff_t>(old_size),
                 [](wchar_t unit) { return static_cast<char>(unit); });
  position += count;
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
  std::size_t position = 0;
  for (AppendPlain(record, text, position); position < text.size();
       AppendPlain(record, text, position)) {
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
  std::string record;
  record.reserve(kFrameBytes + tag.size() + text.size());
  AppendRecordTime(record, origin.time);
  record += " [";
  record += std::to_string(origin.process_id);
  record += ':';
  record += std::to_string(origin.thread_id);
  record += "] ";
  const std::string level_name = LevelName(level);
  record += level_name;
  record.append(level_name.size() < kLevelWidth ? kLevelWidth - level_name.size() : 0, ' ');
  record += " [";
  AppendTag(record, tag);
  record += "] ";
  AppendText(record, text);
  record += '\n';
  return record;
}

}  // namespace nhupdate
