#include "text/string_table.h"

#include "tests/support/recorded_log.h"
#include "tests/support/windows_basics.h"
#include "text/string_keys.h"

namespace nhupdate_test {
namespace {

using namespace std::string_literals;

class StringTableTest : public testing::Test {
 protected:
  void Load() {
    log_.ForgetRecords();
    LoadStrings(strings_, path_, log_.Log());
  }

  void Load(const std::string& bytes) {
    WriteFileBytes(path_, bytes);
    Load();
  }

  // The records of a load after which there are that many texts.
  [[nodiscard]] bool Logged(std::size_t count) const {
    return log_.Records() ==
           std::vector<std::wstring>{L"2|Load strings from {root}\\texts.json",
                                     L"2|Total " + std::to_wstring(count) + L" strings loaded."};
  }

  ScratchFolder scratch_;
  std::wstring path_ = scratch_.Path() + L"\\texts.json";
  RecordedLog log_{scratch_.Path()};
  StringTable strings_;
};

TEST_F(StringTableTest, TakesTheTextsOfAnObject) {
  const struct {
    const char* name;
    std::string bytes;
    StringTable strings;
  } cases[] = {
      {"texts",
       R"({"KEY_UPDATE_TITLE": "Nimba Hub Update", "Other": "a\nb"})",
       {{kKeyUpdateTitle, L"Nimba Hub Update"}, {L"Other", L"a\nb"}}},
      {"a mark", "\xEF\xBB\xBF{\"A\":\"x\",\"B\":\"y\"}", {{L"A", L"x"}, {L"B", L"y"}}},
      {"two marks", "\xEF\xBB\xBF\xEF\xBB\xBF{\"A\":\"x\"}", {}},
      {"UTF-8", "{\"\xC3\x84\":\"\xE6\x96\xB0\xFF\"}", {{L"\u00C4", L"\u65B0\uFFFD"}}},
      {"a key twice", R"({"A":"x","A":"y"})", {{L"A", L"y"}}},
      {"a later member that is no text", R"({"A":"x","A":1,"B":"y"})", {{L"B", L"y"}}},
      {"no texts",
       R"({"A":"", "B":1, "C":{"D":"z"}, "":"e", "F":["g"], "H":null, "I":true, "J":1.5})",
       {}},
      {"something behind it", "{\"A\":\"x\"}\0{\"B\":\"y\"}"s, {{L"A", L"x"}}},
      {"a million levels",
       "{\"A\":\"x\",\"B\":" + std::string(1'000'000, '[') + std::string(1'000'000, ']') + "}",
       {{L"A", L"x"}}},
      {"nothing", "", {}},
      {"half an object", "{", {}},
      {"an empty object", "{}", {}},
      {"half a mark", "\xEF\xBB", {}},
      {"only a mark", "\xEF\xBB\xBF", {}},
      {"null", "null", {}},
      {"an array", R"(["KEY_UPDATE_TITLE","x"])", {}},
      {"a text", R"("KEY_UPDATE_TITLE")", {}},
      {"no end", R"({"A":"x")", {}},
      {"no colon", R"({"A" "x"})", {}},
      {"no value", R"({"A":"x","B":})", {}},
      {"something before it", R"(x{"A":"x"})", {}},
      {"a comment", "// comment\n{\"A\":\"x\"}", {}},
      {"a NUL in a text", "{\"A\":\"x\0\"}"s, {}},
      {"a NUL before it", "\0{\"A\":\"x\"}"s, {}},
      {"UTF-16", "\xFF\xFE{\0\"\0A\0\"\0:\0\"\0x\0\"\0}\0"s, {}},
  };
  for (const auto& c : cases) {
    strings_.clear();

    Load(c.bytes);

    EXPECT_EQ(strings_, c.strings) << c.name;
    EXPECT_TRUE(Logged(c.strings.size())) << c.name;
  }
}

TEST_F(StringTableTest, AddsToWhatIsThere) {
  Load(R"({"A":"a","B":"b"})");

  Load(R"({"B":"new","C":"c"})");
  const StringTable expected = {{L"A", L"a"}, {L"B", L"new"}, {L"C", L"c"}};
  EXPECT_EQ(strings_, expected);
  EXPECT_TRUE(Logged(3));

  Load("[]");
  EXPECT_EQ(strings_, expected);
  EXPECT_TRUE(Logged(3));
}

// Missing, unreadable, too large: tests/unit/text/string_file_test.cpp.
TEST_F(StringTableTest, SaysWhichFileCannotBeReadAndKeepsWhatIsThere) {
  const auto not_opened = ElementsAre(L"2|Load strings from {root}\\texts.json",
                                      L"4|Fail to open string file : {root}\\texts.json");
  const StringTable expected = {{L"A", L"a"}};
  Load(R"({"A":"a"})");
  {
    const INTERPOSER(ReadFile) read(Answers(FALSE, ERROR_CRC));
    Load();
  }
  EXPECT_THAT(log_.Records(), not_opened);
  EXPECT_EQ(strings_, expected);

  ::DeleteFileW(path_.c_str());
  Load();
  EXPECT_THAT(log_.Records(), not_opened);
  EXPECT_EQ(strings_, expected);
}

TEST_F(StringTableTest, GivesTheKeyForWhatIsNotThere) {
  const StringTable strings = {{L"KEY_UPDATE_TITLE", L"x"}};

  EXPECT_EQ(GetString(strings, kKeyUpdateTitle), L"x");
  for (const wchar_t* key : {L"key_update_title", L"KEY_UPDATE_TITLE ", L""}) {
    EXPECT_EQ(GetString(strings, key), key);
  }
  EXPECT_EQ(GetString({}, kKeyFailCommonError), L"KEY_FAIL_COMMON_ERROR");
  EXPECT_EQ(GetString({}, kKeyFailNeedStopNHUpdateManager), L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER");
}

}  // namespace
}  // namespace nhupdate_test
