#include "examples/host/settings.h"

#include <gtest/gtest.h>

#include "base/windows.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nimba_hub::ReadSettings;
using nimba_hub::Settings;
using std::chrono::seconds;

// As Windows splits it for the program that is started.
std::vector<std::wstring> Split(const std::wstring& arguments) {
  int count = 0;
  wchar_t** const parts = ::CommandLineToArgvW((L"host.exe " + arguments).c_str(), &count);
  std::vector<std::wstring> copies(parts + 1, parts + count);
  ::LocalFree(parts);
  return copies;
}

TEST(HostSettingsTest, AreThoseOfAProductWithoutArguments) {
  const std::optional<Settings> settings = ReadSettings({});

  ASSERT_TRUE(settings);
  EXPECT_EQ(settings->program, nimba_hub::OwnProgram());
  EXPECT_EQ(settings->first_check, seconds(60));
  EXPECT_EQ(settings->check_every, seconds(4 * 3600));
  EXPECT_EQ(settings->offer_again, seconds(24 * 3600));
  EXPECT_EQ(settings->longest_wait, seconds(12 * 3600));
  EXPECT_FALSE(settings->is_helper);
}

TEST(HostSettingsTest, ReachAnotherCopyAsTheyAre) {
  Settings settings;
  settings.program = L"C:\\Program Files\\Corvane\\Nimba Hub\\\u00E4 b%.exe";
  settings.first_check = seconds(1);
  settings.check_every = seconds(2);
  settings.offer_again = seconds(3);
  settings.longest_wait = seconds(4);
  settings.is_helper = true;

  const std::optional<Settings> read = ReadSettings(Split(nimba_hub::ToArguments(settings)));

  ASSERT_TRUE(read);
  EXPECT_EQ(read->program, settings.program);
  EXPECT_EQ(read->first_check, seconds(1));
  EXPECT_EQ(read->check_every, seconds(2));
  EXPECT_EQ(read->offer_again, seconds(3));
  EXPECT_EQ(read->longest_wait, seconds(4));
  EXPECT_TRUE(read->is_helper);
}

TEST(HostSettingsTest, AreNotGuessed) {
  for (const wchar_t* arguments :
       {L"--check", L"--check-every", L"--check-every x", L"--check-every -1",
        L"--check-every \"\"", L"--check-every 99999999999", L"--unknown 1",
        L"--program relative.exe"}) {
    EXPECT_FALSE(ReadSettings(Split(arguments))) << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace nhupdate_test
