#include "text/json_value.h"

#include <climits>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::FreeValue;
using nhupdate::JsonKind;
using nhupdate::JsonValue;
using nhupdate::ParseValue;

JsonValue ValueOf(std::wstring_view text) {
  JsonValue value;
  EXPECT_GT(ParseValue(value, text.data(), static_cast<int>(text.size())), 0);
  return value;
}

TEST(JsonValueTest, IsNotMadeOfAPointer) {
  EXPECT_FALSE((std::is_constructible_v<JsonValue, const wchar_t*>));
  EXPECT_FALSE((std::is_constructible_v<JsonValue, const wchar_t(&)[5]>));
  EXPECT_FALSE((std::is_constructible_v<JsonValue, const char*>));
  EXPECT_TRUE((std::is_constructible_v<JsonValue, std::wstring>));
  EXPECT_TRUE((std::is_constructible_v<JsonValue, bool>));
}

// The kinds have fixed numbers.
TEST(JsonValueTest, HasThePayloadOfItsOwnKindOnlyUntilItIsFreed) {
  const wchar_t* texts[] = {
      L"null", L"true", L"7,", L"0.5,", L"\"text\"", L"[1,[2],{\"a\":3}]", L"{\"a\":{\"b\":[[]]}}"};
  int kind = 0;
  for (const wchar_t* text : texts) {
    SCOPED_TRACE(DescribeString(text));
    JsonValue value = ValueOf(text);
    EXPECT_EQ(static_cast<int>(value.Kind()), kind);
    EXPECT_EQ(value.AsBoolean() != nullptr, kind == 1);
    EXPECT_EQ(value.AsInteger() != nullptr, kind == 2);
    EXPECT_EQ(value.AsReal() != nullptr, kind == 3);
    EXPECT_EQ(value.AsString() != nullptr, kind == 4);
    EXPECT_EQ(value.AsArray() != nullptr, kind == 5);
    EXPECT_EQ(value.AsObject() != nullptr, kind == 6);
    ++kind;

    FreeValue(value);
    FreeValue(value);
    EXPECT_EQ(value.Kind(), JsonKind::kNull);
  }
  EXPECT_EQ(JsonValue().Kind(), JsonKind::kNull);
  EXPECT_EQ(static_cast<int>(JsonKind::kNull), 0);
}

TEST(JsonValueTest, IsNullAfterItWasMovedFrom) {
  JsonValue value = ValueOf(L"{\"a\":[1]}");

  JsonValue constructed = std::move(value);
  EXPECT_EQ(value.Kind(), JsonKind::kNull);  // NOLINT(bugprone-use-after-move): it is promised
  JsonValue assigned = ValueOf(L"[2,[3]]");
  assigned = std::move(constructed);

  EXPECT_EQ(constructed.Kind(), JsonKind::kNull);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(Describe(assigned), R"({"a":[1]})");
}

TEST(JsonReaderTest, ReplacesTheValueOnlyWhenItSucceeds) {
  JsonValue value = ValueOf(L"[1,[2]]");

  EXPECT_EQ(ParseValue(value, L"{\"a\":x}", 7), -5);
  EXPECT_EQ(Describe(value), "[1,[2]]");

  EXPECT_EQ(ParseValue(value, L"{\"a\":1}", 7), 7);
  EXPECT_EQ(Describe(value), R"({"a":1})");
}

TEST(JsonReaderTest, RefusesANullPointerAndABoundBelowOne) {
  const std::pair<JsonReader, const wchar_t*> readers[] = {
      {nhupdate::ParseValue, L"null"}, {nhupdate::ParseObject, L"{}"},
      {nhupdate::ParseArray, L"[]"},   {nhupdate::ParseString, L"\"\""},
      {nhupdate::ParseNumber, L"1,"},  {nhupdate::ParseLiteral, L"null"}};
  for (const auto& [reader, text] : readers) {
    JsonValue value = ValueOf(L"[7]");
    EXPECT_EQ(reader(value, nullptr, 10), -1) << DescribeString(text);
    EXPECT_EQ(Describe(value), "[7]") << DescribeString(text);
    for (const int bound : {0, -1, INT_MIN}) {
      EXPECT_EQ(ReadJson(reader, text, bound), (JsonReading{-1})) << DescribeString(text);
    }
  }
  std::wstring string = L"as it was";
  EXPECT_EQ(nhupdate::ScanString(nullptr, 10, string), -1);
  EXPECT_EQ(string, L"as it was");
  for (const int bound : {0, -1, INT_MIN}) {
    EXPECT_EQ(CReadableText(L"\"\"", bound).ScanString(), (JsonReading{-1}));
  }
}

TEST(JsonReaderTest, ReadsNoWhitespaceBeforeAValueOfOneKind) {
  ExpectReadings(nhupdate::ParseObject, {{L" {}", -1}});
  ExpectReadings(nhupdate::ParseArray, {{L" []", -4}});
  ExpectReadings(nhupdate::ParseLiteral, {{L" null", -1}});
  ExpectReadings(nhupdate::ParseNumber, {{L" 1,", 0, "0"}});
  ExpectReadings(nhupdate::ParseString, {{L" \"a\"", 2, R"("")"}});
}

}  // namespace
}  // namespace nhupdate_test
