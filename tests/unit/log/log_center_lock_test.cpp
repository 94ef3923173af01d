#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "log/log_center.h"
#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;
using testing::ElementsAre;

TEST(LockedLogCenterTest, LetsTheLibraryCallBack) {
  std::vector<std::string> events;
  CNSWLogCenter center;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring&) {
    events.push_back(event);
    if (event == "Start") {
      center.WriteRecord(2, L"tag", L"from within Start");
    } else if (event == "Stop") {
      center.WriteRecord(2, L"tag", L"from within Stop");
    } else if (event == "WriteLog" && events.size() == 8) {
      center.WriteRecord(2, L"tag", L"from within WriteLog");
    }
  };

  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 1);
  center.WriteRecord(2, L"tag", L"text");
  center.UnloadLogLibrary();

  EXPECT_THAT(events, ElementsAre("Load", "Resolve Start", "Resolve Stop", "Resolve Flush",
                                  "Resolve WriteLog", "Start", "WriteLog", "WriteLog", "WriteLog",
                                  "Stop", "WriteLog", "Free"));
}

// Several threads use one log centre while another one unloads and loads the library.
TEST(LockedLogCenterTest, LetsOneThreadAtATimeIntoTheLibrary) {
  std::atomic<int> inside = 0;
  std::atomic<int> overlaps = 0;
  std::atomic<int> records = 0;
  CNSWLogCenter center;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring&) {
    overlaps += inside++ == 0 ? 0 : 1;
    records += event == "WriteLog" ? 1 : 0;
    std::this_thread::yield();
    --inside;
  };
  ASSERT_EQ(center.StartLog(L"library", L"c", L"f"), 1);

  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread) {
      threads.emplace_back([&] {
        for (int record = 0; record < 300; ++record) {
          center.WriteRecord(2, L"tag", L"text");
        }
      });
    }
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        center.StopLog();
        center.UnloadLogLibrary();
        std::ignore = center.StartLog(L"library", L"c", L"f");  // a round without a log is one too
      }
    });
  }

  EXPECT_EQ(overlaps, 0);
  EXPECT_GT(records, 0);
  center.UnloadLogLibrary();
}

}  // namespace
}  // namespace nhupdate_test
