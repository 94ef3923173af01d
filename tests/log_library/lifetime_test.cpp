#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace nhupdate_test
