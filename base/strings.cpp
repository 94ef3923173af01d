#include "base/strings.h"

#include <algorithm>
#include <cstddef>

namespace nhupdate {

namespace {

wchar_t FoldCase(wchar_t unit) {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
}

bool SameLetter(wchar_t left, wchar_t right) {
  return FoldCase(left) == FoldCase(right);
}

}  // namespace

std::wstring LeftPart(const std::wstring& text, int count) {
  return count <= 0 ? std::wstring() : text.substr(0, static_cast<std::size_t>(count));
}

std::wstring RestFrom(const std::wstring& text, int first) {
  if (first < 0 || static_cast<std::size_t>(first) >= text.size()) {
    return {};
  }
  return text.substr(static_cast<std::size_t>(first));
}

int ReplaceAll(std::wstring& text, const std::wstring& old_text, const std::wstring& new_text) {
  if (old_text.empty()) {
    return 0;
  }
  int replacements = 0;
  std::size_t position = text.find(old_text);
  while (position != std::wstring::npos) {
    text.replace(position, old_text.size(), new_text);
    ++replacements;
    position = text.find(old_text, position + new_text.size());
  }
  return replacements;
}

bool EqualsIgnoringCase(const std::wstring& left, const std::wstring& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), SameLetter);
}

bool StartsWithIgnoringCase(const std::wstring& text, const std::wstring& prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), SameLetter);
}

}  // namespace nhupdate
