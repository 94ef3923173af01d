// The manager's records.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/manager_center.h"
#include "base/windows.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

using nhupdate::CManagerCenter;
using nhupdate::LogLevel;
using testing::ElementsAre;

class ManagerLogTest : public testing::Test {
 protected:
  InstalledProduct product_;
  CManagerCenter& manager_ = product_.Manager();
};

TEST_F(ManagerLogTest, TagsEveryRecordWithTheProgramsName) {
  manager_.Log(LogLevel::kInformation, L"formatted %d", 1);
  manager_.Records().WriteText(LogLevel::kError, L"put together");

  const std::vector<LogCall> calls = product_.LogCalls();
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_THAT(calls[0].arguments, ElementsAre(L"2", L"NHUpdateManager", L"formatted 1"));
  EXPECT_THAT(calls[1].arguments, ElementsAre(L"4", L"NHUpdateManager", L"put together"));
}

TEST_F(ManagerLogTest, PassesTheLevelOnAsANumber) {
  manager_.Log(LogLevel::kInformation, L"information");
  manager_.Log(LogLevel::kWarning, L"warning");
  manager_.Log(LogLevel::kError, L"error");

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|information", L"3|warning", L"4|error"));
}

TEST_F(ManagerLogTest, TakesNoPlaceholderFromATextThatIsKnownOnlyNow) {
  const std::wstring path = L"C:\\100%s\\%d";

  manager_.Log(LogLevel::kInformation, L"Launch path : %s", path);
  manager_.Records().WriteText(LogLevel::kInformation, L"Launch path : " + path);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Launch path : C:\\100%s\\%d", L"2|Launch path : C:\\100%s\\%d"));
}

TEST_F(ManagerLogTest, ShowsErrorNumbersSigned) {
  manager_.Log(LogLevel::kInformation, L"Updater exit = %d", DWORD{0xC0000005});

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Updater exit = -1073741819"));
}

TEST_F(ManagerLogTest, WritesALongRecordWhole) {
  const std::wstring list(100000, L'\u00FC');

  manager_.Log(LogLevel::kInformation, L"<%s>", list);

  EXPECT_TRUE(product_.Transcript().back() == L"2|<" + list + L">");
}

TEST_F(ManagerLogTest, AddsNothingToATextAndTakesNothingAway) {
  manager_.Records().WriteText(LogLevel::kInformation, L"");
  manager_.Records().WriteText(LogLevel::kInformation, L" \tx\r\n");

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|", L"2| \u2409x\u240D\u240A"));
}

}  // namespace
}  // namespace nhupdate_test
