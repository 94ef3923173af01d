#include <gmock/gmock.h>

#include <string>

#include "tests/unit/text/load_strings_test.h"
#include "text/string_keys.h"

namespace nhupdate_test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

TEST_F(LoadStringsTest, TakesTheTextsOfTheObject) {
  Load(R"({"KEY_UPDATE_TITLE": "Nimba Hub Update", "Other": "a\nb"})");

  EXPECT_EQ(Text(nhupdate::kKeyUpdateTitle), L"Nimba Hub Update");
  EXPECT_EQ(Text(L"Other"), L"a\nb");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(2)));
}

TEST_F(LoadStringsTest, SkipsAUtf8Mark) {
  Load("\xEF\xBB\xBF{\"A\":\"x\",\"B\":\"y\"}");

  EXPECT_EQ(Text(L"A"), L"x");
  EXPECT_EQ(Text(L"B"), L"y");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(2)));
}

TEST_F(LoadStringsTest, SkipsOneMarkOnly) {
  Load("\xEF\xBB\xBF\xEF\xBB\xBF{\"A\":\"x\"}");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
}

TEST_F(LoadStringsTest, DecodesUtf8) {
  Load("{\"\xC3\x84\":\"\xE6\x96\xB0\xF0\x9F\x98\x80\"}");

  EXPECT_EQ(Text(L"\u00C4"), L"\u65B0\xD83D\xDE00");
}

TEST_F(LoadStringsTest, TakesInvalidUtf8ForReplacementCharacters) {
  Load("{\"A\":\"x\xFFy\"}");

  EXPECT_EQ(Text(L"A"), L"x\uFFFDy");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
}

TEST_F(LoadStringsTest, LetsTheLaterOfTwoMembersWin) {
  Load(R"({"A":"x","A":"y"})");

  EXPECT_EQ(Text(L"A"), L"y");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
}

TEST_F(LoadStringsTest, SkipsMembersThatAreNoTexts) {
  Load(R"({"A":"", "B":1, "C":{"D":"z"}, "":"e", "F":["g"], "H":null, "I":true, "J":1.5})");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
  for (const wchar_t* key : {L"A", L"B", L"C", L"D", L"", L"F", L"H", L"I", L"J"}) {
    EXPECT_EQ(Text(key), key);
  }
}

TEST_F(LoadStringsTest, SkipsATextWhoseLaterMemberIsNone) {
  Load(R"({"A":"x","A":1,"B":"y"})");

  EXPECT_EQ(Text(L"A"), L"A");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
}

TEST_F(LoadStringsTest, AddsToWhatIsThere) {
  Load(R"({"A":"a","B":"b"})");

  Load(R"({"B":"new","C":"c"})");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(3)));
  EXPECT_EQ(Text(L"A"), L"a");
  EXPECT_EQ(Text(L"B"), L"new");
  EXPECT_EQ(Text(L"C"), L"c");
}

TEST_F(LoadStringsTest, CountsWhatWasThereWhenAFileAddsNothing) {
  Load(R"({"A":"a","B":"b"})");

  Load("[]");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(2)));
  EXPECT_EQ(Text(L"A"), L"a");
}

TEST_F(LoadStringsTest, FindsNothingInAFileThatIsNoObject) {
  const std::string contents[] = {
      "",
      "{",
      "{}",
      "\xEF",
      "\xEF\xBB",
      "\xEF\xBB\xBF",
      "{ }",
      "null",
      R"(["KEY_UPDATE_TITLE","x"])",
      R"("KEY_UPDATE_TITLE")",
      R"({"KEY_UPDATE_TITLE":"x")",
      R"({"KEY_UPDATE_TITLE" "x"})",
      R"({"KEY_UPDATE_TITLE":"x","B":})",
      R"(x{"KEY_UPDATE_TITLE":"x"})",
      "// comment\n{\"KEY_UPDATE_TITLE\":\"x\"}",
      "{\"KEY_UPDATE_TITLE\":\"x\0\"}"s,
      "\0{\"KEY_UPDATE_TITLE\":\"x\"}"s,
  };
  for (const std::string& content : contents) {
    Load(content);

    EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0))) << content;
  }
}

TEST_F(LoadStringsTest, FindsNothingInAUtf16File) {
  std::string bytes = "\xFF\xFE";
  for (const char character : std::string(R"({"A":"x"})")) {
    bytes += character;
    bytes += '\0';
  }

  Load(bytes);

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
}

TEST_F(LoadStringsTest, IgnoresWhatStandsBehindTheObject) {
  Load("{\"A\":\"x\"}\0{\"B\":\"y\"}"s);

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
  EXPECT_EQ(Text(L"A"), L"x");
}

TEST_F(LoadStringsTest, SurvivesAFileThatIsNestedAMillionDeep) {
  constexpr int kDepth = 1'000'000;

  Load("{\"A\":\"x\",\"B\":" + std::string(kDepth, '[') + std::string(kDepth, ']') + "}");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
  EXPECT_EQ(Text(L"A"), L"x");
}

TEST_F(LoadStringsTest, GivesTheKeyForWhatIsNotThere) {
  Load(R"({"KEY_UPDATE_TITLE":"x"})");

  EXPECT_EQ(Text(L"key_update_title"), L"key_update_title");
  EXPECT_EQ(Text(L"KEY_UPDATE_TITLE "), L"KEY_UPDATE_TITLE ");
  EXPECT_EQ(Text(L""), L"");
  EXPECT_EQ(Text(nhupdate::kKeyFailCommonError), L"KEY_FAIL_COMMON_ERROR");
  EXPECT_EQ(Text(nhupdate::kKeyFailNeedStopNHUpdateManager), L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER");
}

}  // namespace
}  // namespace nhupdate_test
