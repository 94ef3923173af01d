// What comes through the library's four entries, and what is left when it goes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "log_library/record_time.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/open_handles.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

void RunOnce(const LogPlace& place) {
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"record");
  library.Stop();
}

TEST(LogLifetimeTest, StopMayBeCalledAnyNumberOfTimes) {
  const LogPlace place;
  LoadedLogLibrary library;

  library.Stop();
  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"one");
  library.Stop();
  library.Stop();
  library.Write(L"ignored");
  library.Flush();
  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"two");
  library.Stop();

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("one", "two"));
}

TEST(LogLifetimeTest, FlushBringsTheFileToTheDisk) {
  StartedLog log;
  BOOL result = FALSE;
  {
    Interposer<decltype(::FlushFileBuffers)> flush(
        log.library.Module(), "FlushFileBuffers",
        [&](HANDLE file) { return result = flush.Original()(file); });
    log.library.Flush();
    EXPECT_EQ(flush.Calls(), 1);
  }

  EXPECT_TRUE(result);
}

TEST(LogLifetimeTest, StopClosesTheFile) {
  StartedLog log;

  log.library.Stop();

  const nhupdate::UniqueFile alone(::CreateFileW(log.place.CurrentFile().c_str(), GENERIC_READ, 0,
                                                 nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_TRUE(alone.IsValid());
}

TEST(LogLifetimeTest, BeingUnloadedWithoutAStopLeaksNoHandle) {
  const LogPlace place;
  RunOnce(place);
  const int before = CountOpenHandles();

  for (int run = 0; run < 10; ++run) {
    LoadedLogLibrary library;
    ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
    library.Write(L"record");
  }

  EXPECT_EQ(CountOpenHandles(), before);
}

TEST(LogLifetimeTest, FailedStartsLeakNoHandle) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"file"), "x");
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Outside(L"file")), 2);
  const int before = CountOpenHandles();

  for (int run = 0; run < 10; ++run) {
    EXPECT_EQ(library.Start(place.Settings(), place.Outside(L"file")), 2);
  }

  EXPECT_EQ(CountOpenHandles(), before);
}

TEST(LogRecordTest, CarriesTimeIdsLevelTagAndText) {
  StartedLog log;
  const std::string earliest =
      nhupdate::FormatRecordTime(nhupdate::CurrentRecordTime()).substr(0, 23);

  log.library.Write(3, L"NHUpdateManager", L"Copy fail, sleep 3 seconds and retry.");

  const auto records = ReadRecords(log.place.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].process_id, ::GetCurrentProcessId());
  EXPECT_EQ(records[1].thread_id, ::GetCurrentThreadId());
  EXPECT_EQ(records[1].level, "WARN");
  EXPECT_EQ(records[1].tag, "NHUpdateManager");
  EXPECT_EQ(records[1].text, "Copy fail, sleep 3 seconds and retry.");
  EXPECT_GE(records[1].time.substr(0, 23), earliest);
  EXPECT_LE(records[1].time.substr(0, 23),
            nhupdate::FormatRecordTime(nhupdate::CurrentRecordTime()).substr(0, 23));
}

TEST(LogRecordTest, IsWrittenFromItsLevelUp) {
  const struct {
    const char* settings;
    std::vector<std::string> written;
  } cases[] = {
      {"Level=1\n", {"1", "2", "3", "4", "5"}},
      {"Level=2\n", {"2", "3", "4", "5"}},
      {"Level=3\n", {"3", "4", "5"}},
      {"Level=4\n", {"4", "5"}},
      {"Level=nonsense\n", {"2", "3", "4", "5"}},
  };
  for (const auto& test : cases) {
    StartedLog log(test.settings);

    for (int level = -1; level <= 5; ++level) {
      log.library.Write(level, L"test", std::to_wstring(level).c_str());
    }

    EXPECT_EQ(ReadTexts(log.place.CurrentFile()), test.written) << test.settings;
  }
}

TEST(LogRecordTest, IsOneWriteOfAnyLength) {
  StartedLog log;
  const std::wstring text(1024 * 1024, L'\u4E2D');
  int writes = 0;
  {
    Interposer<decltype(::WriteFile)> write(
        log.library.Module(), "WriteFile",
        [&](HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
          ++writes;
          return write.Original()(file, data, size, written, overlapped);
        });
    log.library.Write(text);
    log.library.Write(L"short");
  }

  const auto texts = ReadTexts(log.place.CurrentFile());
  EXPECT_EQ(writes, 2);
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0].size(), 3u * 1024 * 1024);
  EXPECT_EQ(texts[1], "short");
}

TEST(LogRecordTest, TakesNullForEmpty) {
  StartedLog log;

  log.library.Write(2, nullptr, nullptr);

  const auto records = ReadRecords(log.place.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].tag, "");
  EXPECT_EQ(records[1].text, "");
}

TEST(LogRecordTest, IsThereBeforeAnyFlushOrStop) {
  StartedLog log;

  log.library.Write(L"at once");

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("at once"));
}

}  // namespace
}  // namespace nhupdate_test
