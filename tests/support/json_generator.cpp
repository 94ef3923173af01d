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

std::wstring CJsonGenerator::AnyOf(std::wstring_view units, int count) {
  std::wstring text;
  for (int index = 0; index < count; ++index) {
    text += units[static_cast<std::size_t>(Below(static_cast<int>(units.size())))];
  }
  return text;
}

std::wstring CJsonGenerator::Whitespace() {
  return AnyOf(L" \t\n\x01\x1F", Below(4) == 0 ? Below(4) : 0);
}

std::wstring CJsonGenerator::Number() {
  std::wstring text = AnyOf(L"+-", Below(2));
  text += AnyOf(L"0123456789", Below(8) == 0 ? Below(30) : Below(4));
  if (Below(3) == 0) {
    text += L"." + AnyOf(L"0123456789", Below(20));
  }
  return text.empty() ? L"0" : text;
}

std::wstring CJsonGenerator::Literal() {
  constexpr std::array<std::wstring_view, 3> kNames = {L"true", L"false", L"null"};
  std::wstring text(kNames[static_cast<std::size_t>(Below(3))]);
  for (wchar_t& unit : text) {
    unit = static_cast<wchar_t>(Below(3) == 0 ? unit - 32 : unit);
  }
  return text;
}

std::wstring CJsonGenerator::String() {
  std::wstring text = L"\"";
  for (int count = Below(6); count > 0; --count) {
    switch (Below(5)) {
      case 0:
        text += L"\\" + AnyOf(L"\"\\/nrtbfx", 1);
        break;
      case 1:
        text += L"\\u" + AnyOf(L"0123456789abcdefABCDEFG x\"", 4);
        break;
      default:
        text += AnyOf(L"ab{}[]:, \xE9\xD83D\xDE00", 1);
        break;
    }
  }
  return text + L"\"";
}

std::wstring CJsonGenerator::Array(int depth) {
  std::wstring text = L"[";
  for (int count = Below(4); count > 0; --count) {
    text += Whitespace() + Value(depth - 1) + Whitespace();
    text += Below(5) == 0 ? L" " : L",";
  }
  return text + Whitespace() + L"]";
}

std::wstring CJsonGenerator::Object(int depth) {
  std::wstring text = L"{";
  for (int count = Below(4); count > 0; --count) {
    const std::wstring key = Below(3) == 0 ? L"\"a\"" : String();
    text += Whitespace() + key + Whitespace() + L":" + Whitespace() + Value(depth - 1);
    text += Whitespace() + (Below(5) == 0 ? L" " : L",");
  }
  return text + Whitespace() + L"}";
}

std::wstring CJsonGenerator::Value(int depth) {
  switch (Below(depth > 0 ? 9 : 3)) {
    case 0:
      return Number();
    case 1:
      return Literal();
    case 2:
      return String();
    case 3:
    case 4:
    case 5:
      return Array(depth);
    default:
      return Object(depth);
  }
}

std::wstring CJsonGenerator::DamagedValue(int depth) {
  std::wstring text = Whitespace() + Value(depth) + Whitespace();
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
  return AnyOf(std::wstring_view(kAlphabet, std::size(kAlphabet)), units);
}

}  // namespace nhupdate_test
