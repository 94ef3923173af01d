// Arrays and objects within each other, beside each other and of any size. What is in one of them:
// json_array_test.cpp, json_object_test.cpp.

#include "text/json_container_reader.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "tests/unit/text/json_table.h"
#include "text/json_scanner.h"

namespace nhupdate_test {
namespace {

using nhupdate::CJsonContainerReader;
using nhupdate::CJsonScanner;
using nhupdate::FreeValue;
using nhupdate::JsonKind;
using nhupdate::JsonValue;
using nhupdate::ParseValue;

// So deep that no stack would do for a reader that calls itself: 64 MiB for the tests on Windows,
// and as a rule 8 MiB on the building machine, where the sanitizers make each container dear.
#ifdef _WIN32
constexpr int kDeep = 1'000'000;
#else
constexpr int kDeep = 200'000;
#endif

std::wstring Repeat(std::wstring_view text, int count) {
  std::wstring repeated;
  repeated.reserve(text.size() * static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index) {
    repeated += text;
  }
  return repeated;
}

int Read(JsonValue& value, const std::wstring& text) {
  return ParseValue(value, text.c_str(), static_cast<int>(text.size()));
}

// The number of containers from the outermost to one that is empty, first children only.
int Depth(const JsonValue& value) {
  int depth = 0;
  const JsonValue* next = &value;
  while (next != nullptr) {
    const JsonValue::Array* array = next->AsArray();
    const JsonValue::Object* object = next->AsObject();
    depth += array != nullptr || object != nullptr ? 1 : 0;
    if (array != nullptr && !array->empty()) {
      next = &array->front();
    } else if (object != nullptr && !object->empty()) {
      next = &object->begin()->second;
    } else {
      next = nullptr;
    }
  }
  return depth;
}

TEST(JsonContainerReaderTest, TakesTwoUnitsAloneForOpeningOnes) {
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    EXPECT_EQ(CJsonContainerReader::IsOpening(static_cast<wchar_t>(unit)),
              unit == L'{' || unit == L'[')
        << unit;
  }
}

// Results count from the opening bracket, and what a value was before stays after a failure.
TEST(JsonContainerReaderTest, ReadsOneContainerFromAnywhereInTheText) {
  const std::wstring text = L"7[1,{\"a\":[2]},3]{\"b\":[4,x]}[5";
  CJsonScanner scanner(text.c_str(), static_cast<int>(text.size()));
  const struct {
    JsonKind kind;
    int start;
    int result;
    const char* value;
  } cases[] = {
      {JsonKind::kArray, 1, 15, R"([1,{"a":[2]},3])"},
      {JsonKind::kObject, 4, 9, R"({"a":[2]})"},
      {JsonKind::kArray, 9, 3, "[2]"},
      {JsonKind::kObject, 16, -5, "true"},
      {JsonKind::kArray, 21, -4, "true"},
      {JsonKind::kArray, 27, -1, "true"},  // no "]" ahead, but some before it
  };
  for (const auto& c : cases) {
    JsonValue value(true);
    EXPECT_EQ(CJsonContainerReader(scanner).Read(value, c.kind, c.start), c.result) << c.start;
    EXPECT_EQ(Describe(value), c.value) << c.start;
  }
}

TEST(JsonContainerReaderTest, ReadsAndReleasesVeryDeepContainers) {
  const std::wstring texts[] = {
      Repeat(L"[", kDeep) + Repeat(L"]", kDeep),
      Repeat(L"{\"a\":", kDeep - 1) + L"{}" + Repeat(L"}", kDeep - 1),
      Repeat(L"[{\"\":", kDeep / 2) + L"1" + Repeat(L"}, 2]", kDeep / 2),
  };
  for (const std::wstring& text : texts) {
    JsonValue value;
    EXPECT_EQ(Read(value, text), static_cast<int>(text.size()));
    EXPECT_EQ(Depth(value), kDeep);
    FreeValue(value);
    EXPECT_EQ(value.Kind(), JsonKind::kNull);
  }
}

TEST(JsonContainerReaderTest, ReleasesADeepValueThatIsReplacedOrGoesOutOfScope) {
  const std::wstring text = Repeat(L"[0,", kDeep) + Repeat(L"]", kDeep);
  JsonValue replaced;
  JsonValue left;

  EXPECT_GT(Read(left, text), 0);
  EXPECT_GT(Read(replaced, text), 0);
  EXPECT_EQ(Read(replaced, L"true"), 4);

  EXPECT_EQ(Describe(replaced), "true");
}

// Arrays add up what is read before the failure of an element; objects report only what they have
// read themselves.
TEST(JsonContainerReaderTest, FailsInTheInnermostOfVeryDeepContainers) {
  const std::wstring arrays = Repeat(L"[", kDeep);
  const std::wstring objects = Repeat(L"{\"a\":", kDeep);
  const struct {
    std::wstring text;
    int result;
  } cases[] = {
      {arrays + L"x" + Repeat(L"]", kDeep), -(kDeep + 1)},
      {objects + L"x" + Repeat(L"}", kDeep), -5},
      {arrays, -1},
      {objects, -1},
      {arrays + L"]", -(kDeep + 2)},
      {Repeat(L"[{\"a\":", kDeep) + L"]", -2},
      {arrays + L"{" + Repeat(L"]", kDeep), -(kDeep + 1)},
  };
  for (const auto& c : cases) {
    JsonValue value;
    EXPECT_EQ(Read(value, c.text), c.result);
    EXPECT_EQ(value.Kind(), JsonKind::kNull);
  }
}

TEST(JsonContainerReaderTest, ReadsVeryManyElementsAndMembers) {
  JsonValue value;
  std::wstring text = L"[" + Repeat(L"7,", kDeep) + L"]";
  EXPECT_EQ(Read(value, text), static_cast<int>(text.size()));
  ASSERT_NE(value.AsArray(), nullptr);
  EXPECT_EQ(value.AsArray()->size(), static_cast<std::size_t>(kDeep));

  text = L"{" + Repeat(L"\"a\":[]", kDeep) + L"\"a\":7}";
  EXPECT_EQ(Read(value, text), static_cast<int>(text.size()));
  EXPECT_EQ(Describe(value), R"({"a":7})");
}

TEST(JsonContainerReaderTest, ReadsLongArraysBesideEachOtherAndAsMembers) {
  const std::wstring array = L"[" + Repeat(L"7,", 5000) + L"8]";
  const std::string described(array.begin(), array.end());
  JsonValue value;

  const std::wstring beside = L"[" + array + L"," + array + L"]";
  EXPECT_EQ(Read(value, beside), static_cast<int>(beside.size()));
  EXPECT_EQ(Describe(value), "[" + described + "," + described + "]");

  const std::wstring members = L"{\"b\":" + array + L",\"a\":[9]}";
  EXPECT_EQ(Read(value, members), static_cast<int>(members.size()));
  EXPECT_EQ(Describe(value), "{\"a\":[9],\"b\":" + described + "}");
}

}  // namespace
}  // namespace nhupdate_test
