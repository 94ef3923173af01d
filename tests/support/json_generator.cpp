#include "tests/support/json_generator.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace nhupdate_test {

namespace {

// Its terminator is used too, so that texts have NULs in them.
constexpr wchar_t kAlphabet[] = L"{}[]\":,\\u0123tfnTFNrueals+-.eE 1aG";

}  // namespace

int CJsonGenerator::Below(int limit) {
  return static_cast<int>(engine_() % static_cast<std::uint32_t>(limit));
}

void CJsonGenerator::AddAnyOf(std::wstring_view units, int count) {
  for (int index = 0; index < count; ++index) {
    text_ += units[static_cast<std::size_t>(Below(static_cast<int>(units.size())))];
  }
}

void CJsonGenerator::AddWhitespace() {
  AddAnyOf(L" \t\n\x01\x1F", Below(4) == 0 ? Below(4) : 0);
}

void CJsonGenerator::AddNumber() {
  const std::size_t begin = text_.size();
  AddAnyOf(L"+-", Below(2));
  AddAnyOf(L"0123456789", Below(8) == 0 ? Below(30) : Below(4));
  if (Below(3) == 0) {
    text_ += L'.';
    AddAnyOf(L"0123456789", Below(20));
  }
  if (text_.size() == begin) {
    text_ += L'0';
  }
}

void CJsonGenerator::AddLiteral() {
  constexpr std::array<std::wstring_view, 3> kNames = {L"true", L"false", L"null"};
  for (const wchar_t unit : kNames[static_cast<std::size_t>(Below(3))]) {
    text_ += static_cast<wchar_t>(Below(3) == 0 ? unit - 32 : unit);
  }
}

void CJsonGenerator::AddString() {
  text_ += L'"';
  for (int count = Below(6); count > 0; --count) {
    switch (Below(5)) {
      case 0:
        text_ += L'\\';
        AddAnyOf(L"\"\\/nrtbfx", 1);
        break;
      case 1:
        text_ += L"\\u";
        AddAnyOf(L"0123456789abcdefABCDEFG x\"", 4);
        break;
      default:
        AddAnyOf(L"ab{}[]:, \xE9\xD83D\xDE00", 1);
        break;
    }
  }
  text_ += L'"';
}

// With what stands behind it: a comma, or now and then none.
void CJsonGenerator::AddElement(int depth) {
  AddWhitespace();
  AddValue(depth);
  AddWhitespace();
  text_ += Below(5) == 0 ? L' ' : L',';
}

void CJsonGenerator::AddArray(int depth) {
  text_ += L'[';
  for (int count = Below(4); count > 0; --count) {
    AddElement(depth - 1);
  }
  AddWhitespace();
  text_ += L']';
}

void CJsonGenerator::AddObject(int depth) {
  text_ += L'{';
  for (int count = Below(4); count > 0; --count) {
    AddWhitespace();
    if (Below(3) == 0) {
      text_ += L"\"a\"";
    } else {
      AddString();
    }
    AddWhitespace();
    text_ += L':';
    AddElement(depth - 1);
  }
  AddWhitespace();
  text_ += L'}';
}

void CJsonGenerator::AddValue(int depth) {
  switch (Below(depth > 0 ? 9 : 3)) {
    case 0:
      return AddNumber();
    case 1:
      return AddLiteral();
    case 2:
      return AddString();
    case 3:
    case 4:
    case 5:
      return AddArray(depth);
    default:
      return AddObject(depth);
  }
}

std::wstring CJsonGenerator::Value(int depth) {
  text_.clear();
  AddValue(depth);
  return text_;
}

std::wstring CJsonGenerator::DamagedValue(int depth) {
  text_.clear();
  AddWhitespace();
  AddValue(depth);
  AddWhitespace();
  std::wstring text = text_;
  for (int count = Below(4); count > 0 && !text.empty(); --count) {
    const auto position = static_cast<std::size_t>(Below(static_cast<int>(text.size())));
    switch (Below(5)) {
      case 0:
        text.erase(position, 1);
        break;
      case 1:
        text.insert(position, 1, text[position]);
        break;
      case 2:
        text[position] = Noise(1)[0];
        break;
      case 3:
        text.insert(position, Noise(1));
        break;
      default:
        text.resize(position);
        break;
    }
  }
  return text;
}

std::wstring CJsonGenerator::Noise(int units) {
  text_.clear();
  AddAnyOf(std::wstring_view(kAlphabet, std::size(kAlphabet)), units);
  return text_;
}

}  // namespace nhupdate_test
