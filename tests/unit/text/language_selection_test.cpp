#include "text/language_selection.h"

#include "tests/support/preferred_languages.h"
#include "tests/support/recorded_log.h"
#include "tests/support/steam_setting.h"
#include "tests/support/told_test.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// What Windows has as the first language where nothing else is said.
constexpr wchar_t kOfTheSystem[] = L"100%s";

class SelectLanguageTest : public ToldTest {
 protected:
  void WriteMapping(const std::string& lines) {
    WriteFileBytes(scratch_.Path() + L"\\SteamLanguageMapping.ini", lines);
  }

  std::wstring Select() { return SelectLanguage(scratch_.Path(), log_.Log()); }

  // Tells the records and the language that is selected.
  std::wstring TellSelection(const std::string& heading) {
    log_.ForgetRecords();
    const std::wstring language = Select();
    TellHeading(heading);
    TellLines(log_.Records());
    TellLine(L"= " + language);
    return language;
  }

  // With these languages as those of Windows; tells how it was asked for them, too.
  std::wstring TellSelection(const std::string& heading,
                             const std::vector<std::wstring>& system_languages,
                             int failing_call = 0) {
    const PreferredLanguages preferred(system_languages, failing_call);
    const std::wstring language = TellSelection(heading);
    for (const PreferredLanguages::Call& call : preferred.Arguments()) {
      TellLine(L"~ flags " + std::to_wstring(call.flags) + L", " +
               (call.has_buffer ? L"a" : L"no") + L" buffer, units " + std::to_wstring(call.units));
    }
    return language;
  }

  ScratchFolder scratch_;
  RecordedLog log_;
  SteamSetting steam_;
};

TEST_F(SelectLanguageTest, MapsTheLanguageOfSteamOrAsksTheSystem) {
  const struct {
    const char* lines;
    const wchar_t* steam_language;
    const wchar_t* selected = kOfTheSystem;
  } cases[] = {
      {"[Language]\r\ngerman=de-DE\r\nenglish=en-US\r\n", L"english", L"en-US"},
      {"[Language]\r\ntchinese=zh_TW\r\n", L"tchinese", L"zh-TW"},
      {"[Language]\r\ntchinese=zh_Hant_TW_\r\n", L"tchinese", L"zh-Hant-TW-"},
      {"[Language]\r\nkoreana=ko\r\n", L"koreana", L"ko"},
      {"[LANGUAGE]\r\nENGLISH=en-US\r\n", L"english", L"en-US"},
      {"[language]\r\nenglish=EN-us\r\n", L"English", L"EN-us"},
      {"[Language]\r\n  english  =  en-US  \r\n", L"english", L"en-US"},
      {"[Language]\r\nenglish=\"en_US\"\r\n", L"english", L"en-US"},
      {"[Language]\r\nenglish=' en_US '\r\n", L"english", L" en-US "},
      {"[Other]\r\nenglish=xx\r\n[Language]\r\nenglish=en-US\r\n", L"english", L"en-US"},
      {"[Language]\r\nenglish=en-US\r\nenglish=xx\r\n", L"english", L"en-US"},
      {"; comment\r\n[Language]\r\n;english=xx\r\nenglish=en-US", L"english", L"en-US"},
      {"[Language]\nenglish=en-US\n", L"english", L"en-US"},
      {"[Language]\r\nlatin american=es-419\r\n", L"latin american", L"es-419"},
      {"[Language]\r\n%s=%d_%n\r\n", L"%s", L"%d-%n"},
      {"", L"english"},
      {"", L"en-US"},  // Steam's name is no code, even when it looks like one
      {"[Language]\r\n", L"english"},
      {"[Language]\r\nenglish=\r\n", L"english"},
      {"[Language]\r\nenglish=   \r\n", L"english"},
      {"[Language]\r\nenglish=\"\"\r\n", L"english"},
      {"[Language]\r\ngerman=de-DE\r\nenglish2=xx\r\n", L"english"},
      {"[Languages]\r\nenglish=en-US\r\n", L"english"},
      {"english=en-US\r\n", L"english"},
      {"[Language]\r\nenglish=xx\r\n", L"%s%d %n"},
  };
  for (const auto& c : cases) {
    steam_.SetLanguage(c.steam_language);
    WriteMapping(c.lines);

    EXPECT_EQ(TellSelection(PrintToString(c.lines), {kOfTheSystem}), c.selected) << c.lines;
  }
}

TEST_F(SelectLanguageTest, Takes255CharactersOfAMapping) {
  steam_.SetLanguage(L"english");
  for (const std::size_t length : {254U, 255U, 256U, 1000U}) {
    WriteMapping("[Language]\r\nenglish=" + std::string(length, 'x'));

    EXPECT_EQ(Select().size(), length < 255 ? 254U : 255U) << length;
  }
}

// Windows' function takes no longer path without the prefix of the extended-length form.
TEST_F(SelectLanguageTest, PassesALongPathOfTheMappingInTheFormForIt) {
  steam_.SetLanguage(L"english");
  const std::wstring folder = L"C:\\" + std::wstring(240, L'a');
  std::wstring asked;
  const INTERPOSER(GetPrivateProfileStringW) profile(
      [&](auto, auto, auto, wchar_t* buffer, DWORD, const wchar_t* file) {
        asked = file;
        *buffer = L'x';
        return DWORD{1};
      });

  EXPECT_EQ(SelectLanguage(folder, log_.Log()), L"x");

  EXPECT_EQ(asked, L"\\\\?\\" + folder + L"\\SteamLanguageMapping.ini");
}

TEST_F(SelectLanguageTest, AsksTheSystemWithoutALanguageOfSteam) {
  WriteMapping("[Language]\r\n=xx\r\nenglish=en-US\r\n");
  TellSelection("No key", {L"pt-BR"});
  steam_.CreateKey();
  TellSelection("No value", {L"pt-BR"});
  steam_.SetValue(REG_SZ, {});
  TellSelection("Nothing in it", {L"pt-BR"});
  steam_.SetValue(REG_EXPAND_SZ, BytesOf(L"english"));
  TellSelection("No plain text", {L"pt-BR"});
  steam_.SetValue(REG_SZ, BytesOf(std::wstring(1025, L'x')));
  TellSelection("Too long", {L"pt-BR"});
}

TEST_F(SelectLanguageTest, TakesTheFirstLanguageOfTheSystemUnchanged) {
  TellSelection("", {L"pt-BR", L"en-US", L"de"});
  TellSelection("", {L"zh_Hant_TW", L"en"});
  TellSelection("", {L"EN-us"});
  TellSelection("None", {});
  const INTERPOSER(GetUserPreferredUILanguages) preferred(
      [](DWORD, ULONG* count, wchar_t*, ULONG* units) {
        *count = 0;
        *units = 0;
        return TRUE;
      });
  TellSelection("Not even a terminator");
}

TEST_F(SelectLanguageTest, UsesTheDefaultWhenNeitherMappingNorSystemHelps) {
  TellSelection("No size", {L"pt-BR"}, 1);
  TellSelection("No list", {L"pt-BR"}, 2);
  steam_.SetLanguage(L"english");
  TellSelection("No mapping", {L"pt-BR"}, 1);
}

TEST_F(SelectLanguageTest, UnderstandsTheRealSystem) {
  const std::wstring language = Select();

  EXPECT_FALSE(language.empty());
  EXPECT_EQ(log_.Records().back(), L"2|Found System language setting : " + language);
}

}  // namespace
}  // namespace nhupdate_test
