#include "log_library/utf8_encoding.h"

namespace nhupdate {

namespace {

bool IsLead(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsTrail(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

char ContinuationByte(char32_t character, unsigned shift) {
  return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
}

}  // namespace

char32_t NextCharacter(std::wstring_view text, std::size_t& position) {
  const char32_t first = text[position++];
  if (IsLead(first) && position < text.size() && IsTrail(text[position])) {
    const char32_t second = text[position++];
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
  }
  return IsLead(first) || IsTrail(first) ? kReplacementCharacter : first;
}

void AppendUtf8(std::string& bytes, char32_t character) {
  if (character < 0x80) {
    bytes += static_cast<char>(character);
  } else if (character < 0x800) {
    bytes += static_cast<char>(0xC0 | (character >> 6));
    bytes += ContinuationByte(character, 0);
  } else if (character < 0x10000) {
    bytes += static_cast<char>(0xE0 | (character >> 12));
    bytes += ContinuationByte(character, 6);
    bytes += ContinuationByte(character, 0);
  } else {
    bytes += static_cast<char>(0xF0 | (character >> 18));
    bytes += ContinuationByte(character, 12);
    bytes += ContinuationByte(character, 6);
    bytes += ContinuationByte(character, 0);
  }
}

}  // namespace nhupdate
