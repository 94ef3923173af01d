#include "text/language_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/preferred_languages.h"
#include "tests/support/recorded_log.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/steam_setting.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

const std::wstring kNoSteam = L"2|Steam language setting not found.";
const std::wstring kNoMapping = L"2|Steam language mapping fail.";
const std::wstring kDefault = L"2|Use default language.";

std::wstring FoundSteam(const std::wstring& language) {
  return L"2|Found steam language setting : " + language;
}

std::wstring Mapped(const std::wstring& language) {
  return L"2|Mapping steam language to " + language + L".";
}

std::wstring FoundSystem(const std::wstring& language) {
  return L"2|Found System language setting : " + language;
}

class SelectLanguageTest : public testing::Test {
 protected:
  void WriteMapping(const std::string& lines) {
    WriteFileBytes(scratch_.Path() + L"\\SteamLanguageMapping.ini", lines);
  }

  std::wstring Select() {
    log_.ForgetRecords();
    return nhupdate::SelectLanguage(scratch_.Path(), log_.Log());
  }

  // With the system's languages replaced.
  std::wstring Select(const std::vector<std::wstring>& system_languages, int failing_call = 0) {
    const PreferredLanguages preferred(system_languages, failing_call);
    std::wstring language = Select();
    system_calls_ = preferred.Arguments();
    return language;
  }

  ScratchFolder scratch_;
  RecordedLog log_;
  SteamSetting steam_;
  std::vector<PreferredLanguages::Call> system_calls_;
};

TEST_F(SelectLanguageTest, MapsTheLanguageOfSteamWithoutAskingTheSystem) {
  steam_.SetLanguage(L"english");
  WriteMapping("[Language]\r\ngerman=de-DE\r\nenglish=en-US\r\n");

  EXPECT_EQ(Select({L"fr-FR"}), L"en-US");

  EXPECT_THAT(log_.Records(), ElementsAre(FoundSteam(L"english"), Mapped(L"en-US")));
  EXPECT_TRUE(system_calls_.empty());
}

TEST_F(SelectLanguageTest, ReadsMappingsLikeAnyProfile) {
  struct Case {
    const char* lines;
    const wchar_t* steam_language;
    const wchar_t* mapped;  // null when there is no mapping
  };
  const Case cases[] = {
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
      {"", L"english", nullptr},
      {"", L"en-US", nullptr},  // Steam's name is no code, even when it looks like one
      {"[Language]\r\n", L"english", nullptr},
      {"[Language]\r\nenglish=\r\n", L"english", nullptr},
      {"[Language]\r\nenglish=   \r\n", L"english", nullptr},
      {"[Language]\r\nenglish=\"\"\r\n", L"english", nullptr},
      {"[Language]\r\ngerman=de-DE\r\nenglish2=xx\r\n", L"english", nullptr},
      {"[Languages]\r\nenglish=en-US\r\n", L"english", nullptr},
      {"english=en-US\r\n", L"english", nullptr},
      {"[Language]\r\nenglish=xx\r\n", L"%s%d %n", nullptr},
  };
  for (const Case& c : cases) {
    steam_.SetLanguage(c.steam_language);
    WriteMapping(c.lines);

    EXPECT_EQ(Select({L"100%s"}), c.mapped != nullptr ? c.mapped : L"100%s") << c.lines;

    const std::wstring found = FoundSteam(c.steam_language);
    EXPECT_EQ(log_.Records(), c.mapped != nullptr
                                  ? (std::vector{found, Mapped(c.mapped)})
                                  : (std::vector{found, kNoMapping, FoundSystem(L"100%s")}))
        << c.lines;
  }
}

TEST_F(SelectLanguageTest, Takes255CharactersOfAMapping) {
  steam_.SetLanguage(L"english");
  for (const int length : {254, 255, 256, 1000}) {
    WriteMapping("[Language]\r\nenglish=" + std::string(static_cast<std::size_t>(length), 'x'));

    EXPECT_EQ(Select({L"fr-FR"}).size(), length < 255 ? 254U : 255U) << length;
  }
}

// Windows' function takes no longer path without the prefix of the extended-length form.
TEST_F(SelectLanguageTest, PassesALongPathOfTheMappingInTheFormForIt) {
  steam_.SetLanguage(L"english");
  const std::wstring folder = L"C:\\" + std::wstring(240, L'a');
  std::wstring asked;
  INTERPOSER(GetPrivateProfileStringW) profile([&](const wchar_t*, const wchar_t*, const wchar_t*,
                                                   wchar_t* buffer, DWORD, const wchar_t* file) {
    asked = file;
    *buffer = L'x';
    return DWORD{1};
  });

  EXPECT_EQ(nhupdate::SelectLanguage(folder, log_.Log()), L"x");

  EXPECT_EQ(asked, L"\\\\?\\" + folder + L"\\SteamLanguageMapping.ini");
}

TEST_F(SelectLanguageTest, AsksTheSystemWithoutALanguageOfSteam) {
  WriteMapping("[Language]\r\n=xx\r\nenglish=en-US\r\n");
  EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR");  // no key
  EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR")));

  steam_.CreateKey();
  EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR");  // no value
  EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR")));

  const RegistryValue values[] = {
      {REG_SZ, {}},
      {REG_EXPAND_SZ, BytesOf(L"english")},
      {REG_SZ, BytesOf(std::wstring(1025, L'x'))},
  };
  for (const RegistryValue& value : values) {
    steam_.SetValue(value.type, value.bytes);
    EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR") << value.type;
    EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR"))) << value.type;
  }
}

TEST_F(SelectLanguageTest, TakesTheFirstLanguageOfTheSystemUnchanged) {
  const std::vector<std::vector<std::wstring>> lists = {
      {L"pt-BR"}, {L"pt-BR", L"en-US", L"de"}, {L"zh_Hant_TW", L"en"}, {L"EN-us"}, {L"de"}};
  for (const std::vector<std::wstring>& list : lists) {
    EXPECT_EQ(Select(list), list.front());
    EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(list.front())));
  }
}

TEST_F(SelectLanguageTest, AsksTheSystemForTheSizeFirst) {
  EXPECT_EQ(Select({L"pt-BR", L"en"}), L"pt-BR");

  constexpr ULONG kUnits = 6 + 3 + 1;
  EXPECT_EQ(system_calls_, (std::vector<PreferredLanguages::Call>{
                               {MUI_LANGUAGE_NAME, false, 0}, {MUI_LANGUAGE_NAME, true, kUnits}}));
}

// The one has only its terminator, the other not even that.
TEST_F(SelectLanguageTest, SurvivesAnEmptyListOfTheSystem) {
  EXPECT_EQ(Select({}), L"");
  EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(L"")));

  INTERPOSER(GetUserPreferredUILanguages) preferred(
      [](DWORD, ULONG* count, wchar_t*, ULONG* units) -> BOOL {
        *count = 0;
        *units = 0;
        return TRUE;
      });
  EXPECT_EQ(Select(), L"");
  EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(L"")));
}

TEST_F(SelectLanguageTest, UsesTheDefaultWhenNeitherMappingNorSystemHelps) {
  for (const int failing_call : {1, 2}) {
    EXPECT_EQ(Select({L"pt-BR"}, failing_call), L"Default");
    EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, kDefault));
    EXPECT_EQ(system_calls_.size(), static_cast<std::size_t>(failing_call));
  }

  steam_.SetLanguage(L"english");
  EXPECT_EQ(Select({L"pt-BR"}, 1), L"Default");
  EXPECT_THAT(log_.Records(), ElementsAre(FoundSteam(L"english"), kNoMapping, kDefault));
}

TEST_F(SelectLanguageTest, UnderstandsTheRealSystem) {
  const std::wstring language = Select();

  EXPECT_FALSE(language.empty());
  EXPECT_NE(language, L"Default");
  EXPECT_THAT(log_.Records(), ElementsAre(kNoSteam, FoundSystem(language)));
}

}  // namespace
}  // namespace nhupdate_test
