// The doubles for what Windows tells the program about the system and about itself.

#include "app/elevation.h"
#include "base/known_folder.h"
#include "base/registry.h"
#include "tests/support/preferred_languages.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/quiet_system.h"
#include "tests/support/steam_setting.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// The number of names that Windows gives, and the names with "|" in the place of NUL; or the error.
std::wstring Languages(ULONG units) {
  std::wstring names(units, L'x');
  ULONG count = 0;
  if (!::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &units)) {
    return L"error " + std::to_wstring(::GetLastError());
  }
  names.resize(units);
  for (wchar_t& unit : names) {
    unit = unit == L'\0' ? L'|' : unit;
  }
  return std::to_wstring(count) + L" " + names;
}

TEST(PreferredLanguagesTest, AreThoseGiven) {
  const PreferredLanguages languages({L"de-DE", L"en-US"});

  EXPECT_EQ(Languages(100), L"2 de-DE|en-US||");
}

TEST(PreferredLanguagesTest, DoNotFitIntoLessThanTheyNeed) {
  const PreferredLanguages languages({L"de-DE"});

  EXPECT_EQ(Languages(6), L"error " + std::to_wstring(ERROR_INSUFFICIENT_BUFFER));
  EXPECT_EQ(Languages(7), L"1 de-DE||");
}

TEST(PreferredLanguagesTest, CannotBeHadFromTheFailingCallOn) {
  const PreferredLanguages languages({L"de-DE"}, 2);

  EXPECT_EQ(Languages(100), L"1 de-DE||");
  EXPECT_EQ(Languages(100), L"error " + std::to_wstring(ERROR_GEN_FAILURE));
  EXPECT_EQ(languages.Calls(), 2);
}

TEST(QuietSystemTest, HasOneLanguageAndNoSteam) {
  SteamSetting steam;
  steam.SetLanguage(L"english");
  const QuietSystem system;
  std::wstring language;

  EXPECT_EQ(Languages(100), L"1 en-US||");
  EXPECT_EQ(GetRegString(L"SOFTWARE\\Valve\\Steam", L"Language", language), 0);
}

TEST(ProductSurroundingsTest, TellTheProgramWhereAndWhatItIs) {
  const ProductSurroundings surroundings(
      {.executable = L"C:\\a\\b.exe", .program_data = L"D:\\Data", .elevated = false});
  std::array<wchar_t, 20> path = {};

  EXPECT_EQ(::GetModuleFileNameW(nullptr, path.data(), 20), 10u);
  EXPECT_STREQ(path.data(), L"C:\\a\\b.exe");
  EXPECT_EQ(ProgramDataFolder(), L"D:\\Data");
  EXPECT_FALSE(IsProcessElevated());
}

TEST(ProductSurroundingsTest, MayLackADataFolderAndCutPathsOff) {
  const ProductSurroundings surroundings({.executable = L"C:\\a\\b.exe", .program_data = L""});
  std::array<wchar_t, 20> path = {};

  EXPECT_EQ(::GetModuleFileNameW(nullptr, path.data(), 5), 5u);
  EXPECT_STREQ(path.data(), L"C:\\a");
  EXPECT_EQ(ProgramDataFolder(), std::nullopt);
  EXPECT_TRUE(IsProcessElevated());
}

}  // namespace
}  // namespace nhupdate_test
