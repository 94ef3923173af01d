#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/data/shipped_config.h"
#include "text/string_file.h"

namespace nhupdate_test {
namespace {

struct Choice {
  const wchar_t* system_language;  // as Windows reports it
  const wchar_t* file;             // the code in the name of the file that serves it
};

constexpr Choice kChoices[] = {
    // What Windows itself can be shown in.
    {L"ar-SA", L"ar"},
    {L"bg-BG", L"bg"},
    {L"ca-ES", L"ca"},
    {L"cs-CZ", L"cs"},
    {L"da-DK", L"da"},
    {L"de-DE", L"de"},
    {L"el-GR", L"el"},
    {L"en-GB", L"en"},
    {L"en-US", L"en"},
    {L"es-ES", L"es"},
    {L"es-MX", L"es-MX"},
    {L"et-EE", L"et"},
    {L"eu-ES", L"eu"},
    {L"fi-FI", L"fi"},
    {L"fr-CA", L"fr"},
    {L"fr-FR", L"fr"},
    {L"gl-ES", L"gl"},
    {L"he-IL", L"he"},
    {L"hr-HR", L"hr"},
    {L"hu-HU", L"hu"},
    {L"id-ID", L"id"},
    {L"it-IT", L"it"},
    {L"ja-JP", L"ja"},
    {L"ko-KR", L"ko"},
    {L"lt-LT", L"lt"},
    {L"lv-LV", L"lv"},
    {L"nb-NO", L"nb"},
    {L"nl-NL", L"nl"},
    {L"pl-PL", L"pl"},
    {L"pt-BR", L"pt-BR"},
    {L"pt-PT", L"pt"},
    {L"ro-RO", L"ro"},
    {L"ru-RU", L"ru"},
    {L"sk-SK", L"sk"},
    {L"sl-SI", L"sl"},
    {L"sr-Latn-RS", L"sr"},
    {L"sv-SE", L"sv"},
    {L"th-TH", L"th"},
    {L"tr-TR", L"tr"},
    {L"uk-UA", L"uk"},
    {L"vi-VN", L"vi"},
    {L"zh-CN", L"zh"},
    {L"zh-TW", L"zh-TW"},

    // Language interface packs, and languages of older Windows.
    {L"ca-ES-valencia", L"ca"},
    {L"ms-MY", L"ms"},
    {L"nn-NO", L"nn"},
    {L"sr-Cyrl-RS", L"sr-Cyrl-RS"},
    {L"zh-HK", L"zh-HK"},

    // Chinese by script and place: the part before the first hyphen says neither.
    {L"zh", L"zh"},
    {L"zh-SG", L"zh"},
    {L"zh-MO", L"zh-MO"},
    {L"zh-Hans", L"zh"},
    {L"zh-Hans-CN", L"zh"},
    {L"zh-Hans-HK", L"zh"},
    {L"zh-Hans-SG", L"zh"},
    {L"zh-Hant", L"zh-Hant"},
    {L"zh-Hant-HK", L"zh-Hant-HK"},
    {L"zh-Hant-MO", L"zh-Hant-MO"},
    {L"zh-Hant-TW", L"zh-Hant-TW"},

    // Places that share the texts of another one.
    {L"ar-EG", L"ar"},
    {L"de-AT", L"de"},
    {L"de-CH", L"de"},
    {L"en-IN", L"en"},
    {L"es-419", L"es-419"},
    {L"es-AR", L"es"},
    {L"fr-BE", L"fr"},
    {L"nl-BE", L"nl"},
    {L"pt-AO", L"pt"},
    {L"sr-Latn-ME", L"sr"},

    // No texts in the language.
    {L"hi-IN", L"Default"},
    {L"qps-ploc", L"Default"},
    {L"Default", L"Default"}};

TEST(ShippedStringFileChoiceTest, GivesEveryWindowsLanguageTheTextsItsUsersRead) {
  for (const Choice& choice : kChoices) {
    SCOPED_TRACE(testing::PrintToString(choice.system_language));

    const std::wstring file =
        nhupdate::ChooseStringFile(ShippedConfigFolder(), choice.system_language);

    EXPECT_EQ(file, ShippedConfigFolder() + L"\\NHUpdateManager." + choice.file + L".json");
    EXPECT_TRUE(nhupdate::Exists(file));
  }
}

}  // namespace
}  // namespace nhupdate_test
