#include <gmock/gmock.h>

#include <string>

#include "tests/unit/text/select_language_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using SelectSteamLanguageTest = SelectLanguageTest;

TEST_F(SelectSteamLanguageTest, MapsTheLanguageOfSteamWithoutAskingTheSystem) {
  steam_.SetLanguage(L"english");
  WriteMapping("[Language]\r\ngerman=de-DE\r\nenglish=en-US\r\n");

  EXPECT_EQ(Select({L"fr-FR"}), L"en-US");

  EXPECT_THAT(product_.Transcript(), ElementsAre(FoundSteam(L"english"), Mapped(L"en-US")));
  EXPECT_TRUE(system_calls_.empty());
}

TEST_F(SelectSteamLanguageTest, ReadsMappingsLikeAnyProfile) {
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

TEST_F(SelectSteamLanguageTest, Takes255CharactersOfAMapping) {
  steam_.SetLanguage(L"english");
  for (const int length : {254, 255, 256, 1000}) {
    WriteMapping("[Language]\r\nenglish=" + std::string(static_cast<std::size_t>(length), 'x'));

    EXPECT_EQ(Select({L"fr-FR"}).size(), length < 255 ? 254U : 255U) << length;
  }
}

TEST_F(SelectSteamLanguageTest, AsksTheSystemWithoutAMapping) {
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

TEST_F(SelectSteamLanguageTest, AsksTheSystemWithoutAMappingFile) {
  steam_.SetLanguage(L"en-US");  // Steam's name is no code, even when it looks like one

  EXPECT_EQ(Select({L"fr-FR"}), L"fr-FR");

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(FoundSteam(L"en-US"), kNoMapping, FoundSystem(L"fr-FR")));
}

}  // namespace
}  // namespace nhupdate_test
