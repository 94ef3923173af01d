#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <iterator>
#include <set>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/data/shipped_config.h"
#include "tests/support/installed_product.h"
#include "tests/support/recorded_log.h"
#include "tests/support/steam_setting.h"
#include "text/language_selection.h"
#include "text/string_file.h"

namespace nhupdate_test {
namespace {

struct SteamLanguage {
  const wchar_t* name;  // as Steam writes it into the registry
  const wchar_t* code;  // of the string file in that language
};

constexpr SteamLanguage kSteamLanguages[] = {
    {L"arabic", L"ar"},      {L"brazilian", L"pt-BR"}, {L"bulgarian", L"bg"}, {L"czech", L"cs"},
    {L"danish", L"da"},      {L"dutch", L"nl"},        {L"english", L"en"},   {L"finnish", L"fi"},
    {L"french", L"fr"},      {L"german", L"de"},       {L"greek", L"el"},     {L"hungarian", L"hu"},
    {L"indonesian", L"id"},  {L"italian", L"it"},      {L"japanese", L"ja"},  {L"korean", L"ko"},
    {L"koreana", L"ko"},     {L"latam", L"es-419"},    {L"malay", L"ms"},     {L"norwegian", L"nb"},
    {L"polish", L"pl"},      {L"portuguese", L"pt"},   {L"romanian", L"ro"},  {L"russian", L"ru"},
    {L"sc_schinese", L"zh"}, {L"schinese", L"zh"},     {L"spanish", L"es"},   {L"swedish", L"sv"},
    {L"tchinese", L"zh-TW"}, {L"thai", L"th"},         {L"turkish", L"tr"},   {L"ukrainian", L"uk"},
    {L"vietnamese", L"vi"},
};

std::set<std::wstring> NamesInTheMapping() {
  std::array<wchar_t, 8192> names = {};
  ::GetPrivateProfileStringW(L"Language", nullptr, L"", names.data(),
                             static_cast<DWORD>(names.size()),
                             (ShippedConfigFolder() + L"\\SteamLanguageMapping.ini").c_str());
  std::set<std::wstring> found;
  for (const wchar_t* name = names.data(); *name != L'\0'; name += std::wcslen(name) + 1) {
    found.insert(name);
  }
  return found;
}

std::set<std::wstring> Without(const std::set<std::wstring>& all,
                               const std::set<std::wstring>& others) {
  std::set<std::wstring> rest;
  std::set_difference(all.begin(), all.end(), others.begin(), others.end(),
                      std::inserter(rest, rest.end()));
  return rest;
}

TEST(SteamLanguageMappingTest, LeadsFromEverySteamLanguageToAFileOfItsOwn) {
  const std::wstring config = ShippedConfigFolder();
  RecordedLog log;
  SteamSetting steam;

  for (const SteamLanguage& language : kSteamLanguages) {
    SCOPED_TRACE(testing::PrintToString(language.name));
    log.ForgetRecords();

    steam.SetLanguage(language.name);
    const std::wstring code = nhupdate::SelectLanguage(config, log.Log());
    const std::wstring file = nhupdate::ChooseStringFile(config, code);

    EXPECT_EQ(file, config + L"\\NHUpdateManager." + language.code + L".json");
    EXPECT_TRUE(nhupdate::Exists(file));
    EXPECT_THAT(
        log.Records(),
        testing::ElementsAre(std::wstring(L"2|Found steam language setting : ") + language.name,
                             std::wstring(L"2|Mapping steam language to ") + language.code + L"."));
  }
}

TEST(SteamLanguageMappingTest, HasNoLanguageThatIsNotTestedHere) {
  std::set<std::wstring> tested;
  std::transform(std::begin(kSteamLanguages), std::end(kSteamLanguages),
                 std::inserter(tested, tested.end()),
                 [](const SteamLanguage& language) { return language.name; });

  const std::set<std::wstring> mapped = NamesInTheMapping();
  EXPECT_THAT(Without(mapped, tested), testing::IsEmpty())
      << "only in data/Config/SteamLanguageMapping.ini, not in kSteamLanguages";
  EXPECT_THAT(Without(tested, mapped), testing::IsEmpty())
      << "only in kSteamLanguages, not in data/Config/SteamLanguageMapping.ini";
}

// The road from the setting to a text, as a whole product takes it.
TEST(SteamLanguageMappingTest, DecidesWhichTextsAreLoadedAtTheStart) {
  InstalledProduct product;
  CopyShippedConfigTo(product.Module() + L"\\Config");
  SteamSetting steam;
  steam.SetLanguage(L"tchinese");

  product.Start();

  EXPECT_THAT(
      product.Transcript(),
      testing::ElementsAre(L"2|Process elevated.", L"2|Found steam language setting : tchinese",
                           L"2|Mapping steam language to zh-TW.",
                           L"2|Load strings from {base}\\NHUpdateManager"
                           L"\\Config\\NHUpdateManager.zh-TW.json",
                           L"2|Total 3 strings loaded."));
  EXPECT_EQ(product.Manager().GetString(L"KEY_UPDATE_TITLE"), L"Nimba Hub \u66F4\u65B0");
}

}  // namespace
}  // namespace nhupdate_test
