#include "app/run_mode.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

namespace nhupdate_test {
namespace {

using nhupdate::ChooseRunMode;
using nhupdate::RunMode;

struct Switch {
  RunMode mode;
  std::wstring name;
};

// In order of precedence.
const Switch kSwitches[] = {
    {RunMode::kDownload, L"download"},
    {RunMode::kInstall, L"install"},
    {RunMode::kUpdate, L"update"},
    {RunMode::kSelfUpdate, L"self_update"},
    {RunMode::kFinalUpdate, L"final_update"},
};

std::wstring UpperCase(std::wstring text) {
  for (wchar_t& unit : text) {
    if (unit >= L'a' && unit <= L'z') {
      unit = static_cast<wchar_t>(unit - L'a' + L'A');
    }
  }
  return text;
}

std::wstring AlternatingCase(std::wstring text) {
  const std::wstring upper = UpperCase(text);
  for (std::size_t index = 0; index < text.size(); index += 2) {
    text[index] = upper[index];
  }
  return text;
}

TEST(ChooseRunModeTest, KnowsEverySwitchInBothFormsAndAnyLetterCase) {
  for (const Switch& s : kSwitches) {
    for (const std::wstring& name : {s.name, UpperCase(s.name), AlternatingCase(s.name)}) {
      EXPECT_EQ(ChooseRunMode({L"-" + name}), s.mode) << testing::PrintToString(name);
      EXPECT_EQ(ChooseRunMode({L"/" + name}), s.mode) << testing::PrintToString(name);
    }
  }
}

TEST(ChooseRunModeTest, PrefersTheModeThatStandsFirstInTheTable) {
  for (std::size_t first = 0; first < std::size(kSwitches); ++first) {
    for (std::size_t later = first; later < std::size(kSwitches); ++later) {
      const Switch& preferred = kSwitches[first];
      const Switch& other = kSwitches[later];

      EXPECT_EQ(ChooseRunMode({L"-" + preferred.name, L"/" + other.name}), preferred.mode)
          << testing::PrintToString(preferred.name) << " before "
          << testing::PrintToString(other.name);
      EXPECT_EQ(ChooseRunMode({L"/" + other.name, L"-" + preferred.name}), preferred.mode)
          << testing::PrintToString(preferred.name) << " after "
          << testing::PrintToString(other.name);
    }
  }
}

TEST(ChooseRunModeTest, PrefersAnInstallationToAnUpdate) {
  EXPECT_EQ(ChooseRunMode({L"-update", L"-install"}), RunMode::kInstall);
}

TEST(ChooseRunModeTest, FindsASwitchAmongOtherArguments) {
  EXPECT_EQ(ChooseRunMode({L"-quiet", L"", L"-update", L"C:\\path"}), RunMode::kUpdate);
  EXPECT_EQ(ChooseRunMode({L"-x", L"-y", L"/final_update"}), RunMode::kFinalUpdate);
}

TEST(ChooseRunModeTest, TakesASwitchGivenTwiceForOne) {
  EXPECT_EQ(ChooseRunMode({L"-install", L"/INSTALL", L"-install"}), RunMode::kInstall);
}

TEST(ChooseRunModeTest, PicksTheFirstOfAllFive) {
  EXPECT_EQ(
      ChooseRunMode({L"-final_update", L"-self_update", L"-update", L"-install", L"-download"}),
      RunMode::kDownload);
}

TEST(ChooseRunModeTest, IgnoresWhatIsOnlyLikeASwitch) {
  const std::vector<std::wstring> near_misses = {
      L"",
      L"-",
      L"/",
      L"update",
      L"--update",
      L"//update",
      L"-/update",
      L"-install:1",
      L"-update ",
      L" -update",
      L"-updat",
      L"-updates",
      L"\u2013update",
      L"\\update",
      L"+update",
      L"-selfupdate",
      L"-self-update",
      L"-self update",
      L"-finalupdate",
      L"-final-update",
      L"-down load",
      L"\"-update\"",
      L"-update\n",
      L"-\u0131nstall",
      L"-\u0130NSTALL",
      std::wstring(L"-update\0", 8),
      L"-uninstall",
      L"--help",
      L"-help",
      L"/?",
      L"--version",
  };

  EXPECT_EQ(ChooseRunMode({}), RunMode::kNone);
  for (const std::wstring& argument : near_misses) {
    EXPECT_EQ(ChooseRunMode({argument}), RunMode::kNone) << testing::PrintToString(argument);
  }
  EXPECT_EQ(ChooseRunMode(near_misses), RunMode::kNone);
}

}  // namespace
}  // namespace nhupdate_test
