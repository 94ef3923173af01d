#include "tests/support/json_description.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace nhupdate_test {

namespace {

std::string DescribeArray(const nhupdate::JsonValue::Array& array) {
  std::string description = "[";
  for (const auto& element : array) {
    description += description.size() > 1 ? "," : "";
    description += Describe(element);
  }
  return description + "]";
}

std::string DescribeObject(const nhupdate::JsonValue::Object& object) {
  std::string description = "{";
  for (const auto& [key, member] : object) {
    description += description.size() > 1 ? "," : "";
    description += DescribeString(key) + ":" + Describe(member);
  }
  return description + "}";
}

}  // namespace

std::string DescribeReal(double real) {
  std::array<char, 64> digits = {};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), real).ptr;
  return "real " + std::string(digits.data(), end);
}

std::string DescribeString(std::wstring_view string) {
  constexpr char kHexadecimal[] = "0123456789ABCDEF";
  std::string description = "\"";
  for (const wchar_t unit : string) {
    const auto code = static_cast<std::uint32_t>(unit);
    if (unit == L'"' || unit == L'\\') {
      description += '\\';
    }
    if (code >= 0x20 && code <= 0x7E) {
      description += static_cast<char>(code);
      continue;
    }
    description += "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
      description += kHexadecimal[(code >> shift) & 0xF];
    }
  }
  return description + "\"";
}

std::string Describe(const nhupdate::JsonValue& value) {
  switch (value.Kind()) {
    case nhupdate::JsonKind::kNull:
      return "null";
    case nhupdate::JsonKind::kBoolean:
      return *value.AsBoolean() ? "true" : "false";
    case nhupdate::JsonKind::kInteger:
      return std::to_string(*value.AsInteger());
    case nhupdate::JsonKind::kReal:
      return DescribeReal(*value.AsReal());
    case nhupdate::JsonKind::kString:
      return DescribeString(*value.AsString());
    case nhupdate::JsonKind::kArray:
      return DescribeArray(*value.AsArray());
    case nhupdate::JsonKind::kObject:
      return DescribeObject(*value.AsObject());
  }
  return "no kind";
}

}  // namespace nhupdate_test
