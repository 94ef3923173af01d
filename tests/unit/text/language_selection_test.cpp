#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "tests/unit/text/select_language_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

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
    steam_.SetValue(value.type, BytesOf(value.text));

    EXPECT_EQ(Select({L"pt-BR"}), L"pt-BR") << value.type;

    EXPECT_THAT(product_.Transcript(), ElementsAre(kNoSteam, FoundSystem(L"pt-BR"))) << value.type;
  }
}

TEST_F(SelectLanguageTest, ReadsASettingWithoutATerminator) {
  WriteMapping("[Language]\r\nenglish=en-US\r\n");
  steam_.SetValue(REG_SZ, BytesOf(L"english"));

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
