#include "log_library/record_text.h"

#include "tests/log_library/log_records.h"
#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

const RecordOrigin kOrigin = {{{2026, 11, 5, 20, 14, 3, 5, 123}, 120}, 4711, 815};
constexpr char kHead[] = "2026-11-20T14:03:05.123+02:00 [4711:815] ";

TEST(RecordTextTest, BeginsWithTimeProcessThreadLevelAndTag) {
  EXPECT_EQ(FormatRecord(kOrigin, 2, L"tag", L"text"), std::string(kHead) + "INFO  [tag] text\n");
}

TEST(RecordTextTest, NamesTheLevelsAndKeepsOtherNumbers) {
  const struct {
    int level;
    const char* name;
  } cases[] = {
      {1, "DEBUG"},
      {2, "INFO "},
      {3, "WARN "},
      {4, "ERROR"},
      {0, "0    "},
      {-1, "-1   "},
      {2147483647, "2147483647"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(FormatRecord(kOrigin, test.level, L"t", L"x"),
              std::string(kHead) + test.name + " [t] x\n");
  }
}

TEST(RecordTextTest, TurnsEveryKindOfTextIntoUtf8ThatForgesNoLine) {
  const struct {
    const char* name;
    std::wstring text;
    std::string expected;
  } cases[] = {
      {"empty", L"", ""},
      {"one byte", L"a~ ", "a~ "},
      {"two bytes", L"\u00A0\u00E4\u07FF", "\xC2\xA0\xC3\xA4\xDF\xBF"},
      {"three bytes", L"\u0800\u4E2D\uFFFF", "\xE0\xA0\x80\xE4\xB8\xAD\xEF\xBF\xBF"},
      {"first pair", L"\xD800\xDC00", "\xF0\x90\x80\x80"},
      {"a pair", L"\xD83D\xDE00", "\xF0\x9F\x98\x80"},
      {"last pair", L"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},
      {"lead at the end", L"a\xD800", "a\xEF\xBF\xBD"},
      {"lead before a letter", L"\xDBFFz", "\xEF\xBF\xBDz"},
      {"trail alone", L"\xDC00z", "\xEF\xBF\xBDz"},
      {"lead before a pair", L"\xD83D\xD83D\xDE00", "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
      {"the wrong way round", L"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"line feed", L"a\nb", "a\n    b"},
      {"carriage return", L"a\rb", "a\n    b"},
      {"both", L"a\r\nb", "a\n    b"},
      {"both the other way", L"a\n\rb", "a\n    \n    b"},
      {"line end at the end", L"a\r\n", "a\n    "},
      {"return at the end", L"a\r", "a\n    "},
      {"two line ends", L"a\n\nb", "a\n    \n    b"},
      {"tab", L"a\tb", "a\tb"},
      {"NUL", std::wstring(L"a\0z", 3), "a\xE2\x90\x80z"},
      {"escape", L"\x1B[2J", "\xE2\x90\x9B[2J"},
      {"vertical tab, form feed", L"\v\f", "\xE2\x90\x8B\xE2\x90\x8C"},
      {"unit separator", L"\x1F", "\xE2\x90\x9F"},
      {"delete", L"\x7F", "\xE2\x90\xA1"},
      {"first of C1", L"\x80", "\xEF\xBF\xBD"},
      {"next line", L"\x85", "\xEF\xBF\xBD"},
      {"last of C1", L"\x9F", "\xEF\xBF\xBD"},
      {"line and paragraph separator", L"\u2028\u2029", "\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(FormatRecord(kOrigin, 2, L"t", test.text),
              kHead + std::string("INFO  [t] ") + test.expected + "\n")
        << test.name;
  }
}

TEST(RecordTextTest, KeepsATagOnItsLineAndInItsBrackets) {
  EXPECT_EQ(
      FormatRecord(kOrigin, 2, L"a]\r\n[b\t\x7F", L"x"),
      std::string(kHead) + "INFO  [a)\xE2\x90\x8D\xE2\x90\x8A(b\xE2\x90\x89\xE2\x90\xA1] x\n");
}

TEST(RecordTextTest, AForgedRecordStaysPartOfTheOneItStandsIn) {
  const std::string forged = "2026-11-20T14:03:05.124+02:00 [1:1] ERROR [tag] forged";
  const std::wstring text = L"real\n" + std::wstring(forged.begin(), forged.end());

  const auto records = ParseRecords(FormatRecord(kOrigin, 2, L"tag", text));

  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].level, "INFO");
  EXPECT_EQ(records[0].text, "real\n" + forged);
}

// Every unit between two letters: the record stays one that can be read back.
TEST(RecordTextTest, NoSingleUnitBreaksARecord) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const std::wstring text = {L'a', static_cast<wchar_t>(unit), L'b'};

    const auto records = ParseRecords(FormatRecord(kOrigin, 2, text, text));

    ASSERT_EQ(records.size(), 1u) << unit;
    ASSERT_TRUE(records[0].text.starts_with("a") && records[0].text.ends_with("b")) << unit;
    ASSERT_TRUE(records[0].tag.starts_with("a") && records[0].tag.ends_with("b")) << unit;
  }
}

}  // namespace
}  // namespace nhupdate_test
