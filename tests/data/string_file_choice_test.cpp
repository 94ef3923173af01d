#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <string>

#include "base/existence.h"
#include "tests/data/shipped_config.h"
#include "tests/support/utf8_text.h"
#include "text/string_file.h"

namespace nhupdate_test {
namespace {

// What Windows itself can be shown in, language interface packs, languages of older Windows, and
// places that share the texts of another one; all as Windows reports them.

// Served by the file of what stands before their first hyphen.
constexpr wchar_t kByLanguage[] =
    L"ar-SA ar-EG bg-BG ca-ES ca-ES-valencia cs-CZ da-DK de-DE de-AT de-CH el-GR en-GB en-US en-IN "
    L"es-ES es-AR et-EE eu-ES fi-FI fr-CA fr-FR fr-BE gl-ES he-IL hr-HR hu-HU id-ID it-IT ja-JP "
    L"ko-KR lt-LT lv-LV ms-MY nb-NO nl-NL nl-BE nn-NO pl-PL pt-PT pt-AO ro-RO ru-RU sk-SK sl-SI "
    L"sr-Latn-RS sr-Latn-ME sv-SE th-TH tr-TR uk-UA vi-VN "
    L"zh zh-CN zh-SG zh-Hans zh-Hans-CN zh-Hans-HK zh-Hans-SG";

// Served by a file of their own. The part before the first hyphen of Chinese says neither script
// nor place.
constexpr wchar_t kByWholeName[] =
    L"es-419 es-MX pt-BR sr-Cyrl-RS zh-Hant zh-Hant-HK zh-Hant-MO zh-Hant-TW zh-HK zh-MO zh-TW";

// There are no texts in these.
constexpr wchar_t kByDefault[] = L"hi-IN qps-ploc Default";

TEST(ShippedStringFileChoiceTest, GivesEveryWindowsLanguageTheTextsItsUsersRead) {
  const struct {
    const wchar_t* languages;
    std::function<std::wstring(const std::wstring&)> file_of;
  } groups[] = {
      {kByLanguage, [](const auto& language) { return language.substr(0, language.find(L'-')); }},
      {kByWholeName, [](const auto& language) { return language; }},
      {kByDefault, [](const auto&) { return L"Default"; }},
  };
  std::set<std::wstring> reached;
  for (const auto& [names, file_of] : groups) {
    std::wistringstream languages(names);
    for (std::wstring language; languages >> language;) {
      const std::wstring file = L"NHUpdateManager." + file_of(language) + L".json";
      const std::wstring expected = ShippedConfigFolder() + L"\\" + file;

      EXPECT_EQ(nhupdate::ChooseStringFile(ShippedConfigFolder(), language), expected);

      EXPECT_TRUE(nhupdate::Exists(expected)) << testing::PrintToString(language);
      reached.insert(file);
    }
  }
  for (const std::wstring& file : ShippedStringFiles()) {
    EXPECT_TRUE(reached.contains(file))
        << "No language leads to data/Config/" << ToUtf8(file)
        << ". If one should, add it to the lists in this file; else the file serves nobody.";
  }
}

}  // namespace
}  // namespace nhupdate_test
