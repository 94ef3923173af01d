#include <gmock/gmock.h>

#include <string>
#include <tuple>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/unit/text/preferred_languages.h"
#include "tests/unit/text/steam_setting.h"

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
  SelectLanguageTest() { product_.Start(); }

  void WriteMapping(const std::string& lines) {
    WriteFileBytes(product_.Module() + L"\\Config\\SteamLanguageMapping.ini", lines);
  }

  // With the system's languages replaced.
  std::wstring Select(const std::vector<std::wstring>& system_languages, int failing_call = 0) {
    product_.ForgetRecords();
    const PreferredLanguages preferred(system_languages, failing_call);
    const std::wstring language = product_.Manager().SelectLanguage();
    system_calls_ = preferred.Arguments();
    return language;
  }

  InstalledProduct product_;
  SteamSetting steam_;
  std::vector<PreferredLanguages::Call> system_calls_;
};

TEST_F(SelectLanguageTest, MapsTheLanguageOfSteamWithoutAskingTheSystem) {
  steam_.SetLanguage(L"english");
  WriteMapping("[Language]\r\ngerman=de-DE\r\nenglish=en-US\r\n");

  EXPECT_EQ(Select({L"fr-FR"}), L"en-US");

  EXPECT_THAT(product_.Transcript(), ElementsAre(FoundSteam(L"english"), Mapped(L"en-US")));
  EXPECT_TRUE(system_calls_.empty());
}

TEST_F(SelectLanguageTest, ReadsMappingsLikeAnyProfile) {
  struct Mapping {
    const char* lines;
    const wchar_t* steam_language;
    const wchar_t* mapped;
  };
  const Mapping mappings[] = {
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
  };
  for (const Mapping& mapping : mappings) {
    steam_.SetLanguage(mapping.steam_language);
    WriteMapping(mapping.lines);

    EXPECT_EQ(Select({L"fr-FR"}), mapping.mapped) << mapping.lines;

    EXPECT_THAT(product_.Transcript(),
                ElementsAre(FoundSteam(mapping.steam_language), Mapped(mapping.mapped)));
  }
}

TEST_F(SelectLanguageTest, Takes255CharactersOfAMapping) {
  steam_.SetLanguage(L"english");
  for (const int length : {254, 255, 256, 1000}) {
    WriteMapping("[Language]\r\nenglish=" + std::string(static_cast<std::size_t>(length), 'x'));

    EXPECT_EQ(Select({L"fr-FR"}).size(), length < 255 ? 254U : 255U) << length;
  }
}

TEST_F(SelectLanguageTest, AsksTheSystemWithoutAMapping) {
  const char* const mappings[] = {
      "",
      "[Language]\r\n",
      "[Language]\r\nenglish=\r\n",
      "[Language]\r\nenglish=   \r\n",
      "[Language]\r\nenglish=\"\"\r\n",
      "[Language]\r\ngerman=de-DE\r\nenglish2=xx\r\n",
      "[Languages]\r\nenglish=en-US\r\n",
      "english=en-US\r\n",
  };
  steam_.SetLanguage(L"english");
  for (const char* mapping : mappings) {
    WriteMapping(mapping);

    EXPECT_EQ(Select({L"fr-FR"}), L"fr-FR") << mapping;

    EXPECT_THAT(product_.Transcript(),
                ElementsAre(FoundSteam(L"english"), kNoMapping, FoundSystem(L"fr-FR")))
        << mapping;
  }
}

TEST_F(SelectLanguageTest, AsksTheSystemWithoutAMappingFile) {
  steam_.SetLanguage(L"en-US");  // Steam's name is no code, even when it looks like one

  EXPECT_EQ(Select({L"fr-FR"}), L"fr-FR");

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(FoundSteam(L"en-US"), kNoMapping, FoundSystem(L"fr-FR")));
}

TEST_F(SelectLanguageTest, AsksTheSystemWithoutSteam) {
  WriteMapping("[Language]\r\n=xx\r\nenglish=en-US\r\n");

  EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR")));
}

TEST_F(SelectLanguageTest, AsksTheSystemWhenSteamHasNoLanguage) {
  steam_.CreateKey();

  EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR")));
}

TEST_F(SelectLanguageTest, TakesAnythingButAPlainTextForNoSetting) {
  WriteMapping("[Language]\r\nenglish=en-US\r\n");
  const struct {
    DWORD type;
    std::wstring text;
  } values[] = {
      {REG_SZ, L""},
      {REG_EXPAND_SZ, L"english"},
      {REG_MULTI_SZ, L"english"},
      {REG_BINARY, L"english"},
      {REG_DWORD, L"xx"},
      {REG_SZ, std::wstring(1025, L'x')},
  };
  for (const auto& value : values) {
    steam_.SetValue(value.type, value.text.data(), value.text.size() * sizeof(wchar_t));

    EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR") << value.type;

    EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR"))) << value.type;
  }
}

TEST_F(SelectLanguageTest, ReadsASettingWithoutATerminator) {
  WriteMapping("[Language]\r\nenglish=en-US\r\n");
  steam_.SetValue(REG_SZ, L"english", 7 * sizeof(wchar_t));

  EXPECT_EQ(Select({L"pt-BR"}), L"en-US");
}

TEST_F(SelectLanguageTest, LogsNamesWithPercentSignsAsTheyStand) {
  steam_.SetLanguage(L"%s%d %n");

  EXPECT_EQ(Select({L"100%s"}), L"100%s");

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(FoundSteam(L"%s%d %n"), kNoMapping, FoundSystem(L"100%s")));
}

TEST_F(SelectLanguageTest, TakesTheFirstLanguageOfTheSystemUnchanged) {
  const std::vector<std::vector<std::wstring>> lists = {
      {L"pt-BR"}, {L"pt-BR", L"en-US", L"de"}, {L"zh_Hant_TW", L"en"}, {L"EN-us"}, {L"de"}};
  for (const std::vector<std::wstring>& list : lists) {
    EXPECT_EQ(Select(list), list.front());

    EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(list.front())));
  }
}

TEST_F(SelectLanguageTest, AsksTheSystemForTheSizeFirst) {
  std::ignore = Select({L"pt-BR", L"en"});

  constexpr ULONG kUnits = 6 + 3 + 1;
  EXPECT_EQ(system_calls_, (std::vector<PreferredLanguages::Call>{
                               {MUI_LANGUAGE_NAME, false, 0}, {MUI_LANGUAGE_NAME, true, kUnits}}));
}

TEST_F(SelectLanguageTest, SurvivesAnEmptyListOfTheSystem) {
  EXPECT_EQ(Select({}), L"");

  EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(L"")));
}

TEST_F(SelectLanguageTest, UsesTheDefaultWhenTheSystemDoesNotAnswer) {
  for (const int failing_call : {1, 2}) {
    EXPECT_EQ(Select({L"pt-BR"}, failing_call), L"Default");

    EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, kDefault));
    EXPECT_EQ(system_calls_.size(), static_cast<std::size_t>(failing_call));
  }
}

TEST_F(SelectLanguageTest, UsesTheDefaultWhenNeitherMappingNorSystemHelps) {
  steam_.SetLanguage(L"english");

  EXPECT_EQ(Select({L"pt-BR"}, 1), L"Default");

  EXPECT_THAT(product_.Transcript(), ElementsAre(FoundSteam(L"english"), kNoMapping, kDefault));
}

TEST_F(SelectLanguageTest, UnderstandsTheRealSystem) {
  product_.ForgetRecords();

  const std::wstring language = product_.Manager().SelectLanguage();

  EXPECT_FALSE(language.empty());
  EXPECT_NE(language, L"Default");
  EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(language)));
}

// The road from the setting to a text, as the start-up takes it.
TEST(LanguageStartUpTest, LoadsTheFileOfTheGeneralLanguage) {
  SteamSetting steam;
  steam.SetLanguage(L"brazilian");
  InstalledProduct product;
  const std::wstring folder = product.Module() + L"\\Config";
  WriteFileBytes(folder + L"\\SteamLanguageMapping.ini", "[Language]\r\nbrazilian=pt_BR\r\n");
  WriteFileBytes(folder + L"\\NHUpdateManager.Default.json", R"({"A":"default"})");
  WriteFileBytes(folder + L"\\NHUpdateManager.pt.json", R"({"A":"pt"})");

  product.Start();

  EXPECT_EQ(product.Manager().GetString(L"A"), L"pt");
}

}  // namespace
}  // namespace nhupdate_test
