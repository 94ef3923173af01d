#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/data/shipped_config.h"
#include "tests/support/utf8_text.h"
#include "text/string_file.h"

namespace nhupdate_test {
namespace {

struct Choice {
  const wchar_t* file;  // the code in the name of the file that serves them
  std::vector<const wchar_t*> system_languages;  // as Windows reports them
};

// What Windows itself can be shown in, language interface packs, languages of older Windows, and
// places that share the texts of another one. The part before the first hyphen of Chinese says
// neither script nor place. The last have no texts in their language.
const Choice kChoices[] = {
    {L"ar", {L"ar-SA", L"ar-EG"}},
    {L"bg", {L"bg-BG"}},
    {L"ca", {L"ca-ES", L"ca-ES-valencia"}},
    {L"cs", {L"cs-CZ"}},
    {L"da", {L"da-DK"}},
    {L"de", {L"de-DE", L"de-AT", L"de-CH"}},
    {L"el", {L"el-GR"}},
    {L"en", {L"en-GB", L"en-US", L"en-IN"}},
    {L"es", {L"es-ES", L"es-AR"}},
    {L"es-419", {L"es-419"}},
    {L"es-MX", {L"es-MX"}},
    {L"et", {L"et-EE"}},
    {L"eu", {L"eu-ES"}},
    {L"fi", {L"fi-FI"}},
    {L"fr", {L"fr-CA", L"fr-FR", L"fr-BE"}},
    {L"gl", {L"gl-ES"}},
    {L"he", {L"he-IL"}},
    {L"hr", {L"hr-HR"}},
    {L"hu", {L"hu-HU"}},
    {L"id", {L"id-ID"}},
    {L"it", {L"it-IT"}},
    {L"ja", {L"ja-JP"}},
    {L"ko", {L"ko-KR"}},
    {L"lt", {L"lt-LT"}},
    {L"lv", {L"lv-LV"}},
    {L"ms", {L"ms-MY"}},
    {L"nb", {L"nb-NO"}},
    {L"nl", {L"nl-NL", L"nl-BE"}},
    {L"nn", {L"nn-NO"}},
    {L"pl", {L"pl-PL"}},
    {L"pt", {L"pt-PT", L"pt-AO"}},
    {L"pt-BR", {L"pt-BR"}},
    {L"ro", {L"ro-RO"}},
    {L"ru", {L"ru-RU"}},
    {L"sk", {L"sk-SK"}},
    {L"sl", {L"sl-SI"}},
    {L"sr", {L"sr-Latn-RS", L"sr-Latn-ME"}},
    {L"sr-Cyrl-RS", {L"sr-Cyrl-RS"}},
    {L"sv", {L"sv-SE"}},
    {L"th", {L"th-TH"}},
    {L"tr", {L"tr-TR"}},
    {L"uk", {L"uk-UA"}},
    {L"vi", {L"vi-VN"}},
    {L"zh", {L"zh-CN", L"zh", L"zh-SG", L"zh-Hans", L"zh-Hans-CN", L"zh-Hans-HK", L"zh-Hans-SG"}},
    {L"zh-Hant", {L"zh-Hant"}},
    {L"zh-Hant-HK", {L"zh-Hant-HK"}},
    {L"zh-Hant-MO", {L"zh-Hant-MO"}},
    {L"zh-Hant-TW", {L"zh-Hant-TW"}},
    {L"zh-HK", {L"zh-HK"}},
    {L"zh-MO", {L"zh-MO"}},
    {L"zh-TW", {L"zh-TW"}},
    {L"Default", {L"hi-IN", L"qps-ploc", L"Default"}},
};

TEST(ShippedStringFileChoiceTest, GivesEveryWindowsLanguageTheTextsItsUsersRead) {
  for (const Choice& choice : kChoices) {
    const std::wstring expected =
        ShippedConfigFolder() + L"\\NHUpdateManager." + choice.file + L".json";
    EXPECT_TRUE(nhupdate::Exists(expected)) << testing::PrintToString(choice.file);
    for (const wchar_t* language : choice.system_languages) {
      EXPECT_EQ(nhupdate::ChooseStringFile(ShippedConfigFolder(), language), expected)
          << testing::PrintToString(language);
    }
  }
}

TEST(ShippedStringFileChoiceTest, LeadsToEveryFile) {
  std::set<std::wstring> reached;
  for (const Choice& choice : kChoices) {
    if (!choice.system_languages.empty()) {
      reached.insert(std::wstring(L"NHUpdateManager.") + choice.file + L".json");
    }
  }

  for (const std::wstring& file : ShippedStringFiles()) {
    EXPECT_TRUE(reached.contains(file))
        << "No language leads to data/Config/" << ToUtf8(file)
        << ". If one should, add it to kChoices in this file; else the file serves nobody.";
  }
}

}  // namespace
}  // namespace nhupdate_test
