#include "app/run_mode.h"

#include <iterator>

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

// In order of precedence.
const struct {
  RunMode mode;
  std::wstring name;
  std::wstring mixed_case;
} kSwitches[] = {
    {RunMode::kDownload, L"download", L"DownLoad"},
    {RunMode::kInstall, L"install", L"INSTALL"},
    {RunMode::kUpdate, L"update", L"UPDATe"},
    {RunMode::kSelfUpdate, L"self_update", L"SELF_Update"},
    {RunMode::kFinalUpdate, L"final_update", L"fINAL_UPDATE"},
};

TEST(ChooseRunModeTest, KnowsEverySwitchInBothFormsAndAnyLetterCase) {
  for (const auto& [mode, name, mixed_case] : kSwitches) {
    for (const std::wstring& argument :
         {L"-" + name, L"/" + name, L"-" + mixed_case, L"/" + mixed_case}) {
      EXPECT_EQ(ChooseRunMode({argument}), mode) << PrintToString(argument);
    }
  }
}

TEST(ChooseRunModeTest, PrefersTheModeThatStandsFirstInTheTable) {
  for (std::size_t first = 0; first < std::size(kSwitches); ++first) {
    for (std::size_t later = first; later < std::size(kSwitches); ++later) {
      const std::wstring preferred = L"-" + kSwitches[first].name;
      const std::wstring other = L"/" + kSwitches[later].name;
      const RunMode mode = kSwitches[first].mode;

      EXPECT_EQ(ChooseRunMode({preferred, other}), mode) << PrintToString(preferred);
      EXPECT_EQ(ChooseRunMode({other, preferred}), mode) << PrintToString(preferred);
    }
  }
}

TEST(ChooseRunModeTest, FindsASwitchAmongOtherArguments) {
  EXPECT_EQ(ChooseRunMode({L"-quiet", L"", L"-update", L"C:\\path"}), RunMode::kUpdate);
  EXPECT_EQ(ChooseRunMode({L"-x", L"-y", L"/final_update"}), RunMode::kFinalUpdate);
}

TEST(ChooseRunModeTest, IgnoresWhatIsOnlyLikeASwitch) {
  const std::vector<std::wstring> near_misses = {
      L"", L"-", L"/", L"update", L"--update", L"//update", L"-/update", L"\\update", L"+update",
      L"\u2013update", L"-install:1", L"-uninstall", L"-updat", L"-updates", L"/updates",
      L"-update ", L" -update", L"-update\n", std::wstring(L"-update\0", 8), L"\"-update\"",
      L"-selfupdate", L"-self-update", L"-self update", L"-finalupdate", L"-final-update",
      L"-down load",
      // Letters that some languages take for an "i".
      L"-\u0131nstall", L"-\u0130NSTALL",
      // Switches that other programs know.
      L"--help", L"-help", L"/?", L"--version"};

  EXPECT_EQ(ChooseRunMode({}), RunMode::kNone);
  for (const std::wstring& argument : near_misses) {
    EXPECT_EQ(ChooseRunMode({argument}), RunMode::kNone) << PrintToString(argument);
  }
  EXPECT_EQ(ChooseRunMode(near_misses), RunMode::kNone);
}

}  // namespace
}  // namespace nhupdate_test
