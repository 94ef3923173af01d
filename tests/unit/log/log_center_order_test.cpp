// In which order the log centre deals with Windows and the library.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "log/log_center.h"
#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;
using testing::ElementsAre;

class OrderlyLogCenterTest : public testing::Test {
 protected:
  OrderlyLogCenterTest() {
    library_.on_event = [this](const std::string& event, const std::wstring&) {
      events_.push_back(event);
    };
  }

  std::vector<std::string> events_;
  CapturedConsole console_;
  FakeLogLibrary library_;
};

TEST_F(OrderlyLogCenterTest, ResolvesAllEntriesBeforeItCallsOne) {
  CNSWLogCenter center;

  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 1);

  EXPECT_THAT(events_, ElementsAre("Load", "Resolve Start", "Resolve Stop", "Resolve Flush",
                                   "Resolve WriteLog", "Start"));
}

TEST_F(OrderlyLogCenterTest, LooksForNoFurtherEntryWhenOneIsMissing) {
  library_.missing_entry = "Flush";
  CNSWLogCenter center;

  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 0);

  EXPECT_THAT(events_, ElementsAre("Load", "Resolve Start", "Resolve Stop", "Resolve Flush", "Stop",
                                   "Free"));
}

TEST_F(OrderlyLogCenterTest, PrintsTheMissingEntryBeforeItUnloads) {
  library_.missing_entry = "WriteLog";
  std::string printed;
  library_.on_event = [&](const std::string& event, const std::wstring&) {
    if (event == "Stop") {
      printed = console_.Bytes();
    }
  };
  CNSWLogCenter center;

  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 0);

  EXPECT_EQ(printed, "Fail to load WriteLog from library\n");
}

TEST_F(OrderlyLogCenterTest, StopsTheLibraryBeforeItFreesIt) {
  CNSWLogCenter center;
  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 1);
  events_.clear();

  center.UnloadLogLibrary();

  EXPECT_THAT(events_, ElementsAre("Stop", "Free"));
}

TEST_F(OrderlyLogCenterTest, DoesTheSameWhenItIsDestroyed) {
  {
    CNSWLogCenter center;
    ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 1);
    events_.clear();
  }

  EXPECT_THAT(events_, ElementsAre("Stop", "Free"));
}

}  // namespace
}  // namespace nhupdate_test
