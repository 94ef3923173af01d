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
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(L"one");
  library.Stop();
  library.Stop();
  library.Write(L"ignored");
  library.Flush();
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(L"two");
  library.Stop();

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("one", "two"));
}

TEST(LogLifetimeTest, FlushBringsTheFileToTheDisk) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  BOOL result = FALSE;
  {
    Interposer<decltype(::FlushFileBuffers)> flush(
        library.Module(), "FlushFileBuffers",
        [&](HANDLE file) { return result = flush.Original()(file); });
    library.Flush();
    EXPECT_EQ(flush.Calls(), 1);
  }

  EXPECT_TRUE(result);
}

TEST(LogLifetimeTest, StopClosesTheFile) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  library.Stop();

  const nhupdate::UniqueFile alone(::CreateFileW(place.CurrentFile().c_str(), GENERIC_READ, 0,
                                                 nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_TRUE(alone.IsValid());
}

// More often than a process has slots for thread-local data, which are easily leaked by a library.
TEST(LogLifetimeTest, ManyRunsLeakNoHandle) {
  constexpr int kRuns = 1200;
  const LogPlace place("MaxFileSizeKB=64\nMaxFiles=2\n");
  RunOnce(place);
  const int before = CountOpenHandles();

  for (int run = 0; run < kRuns; ++run) {
    RunOnce(place);
  }

  EXPECT_EQ(CountOpenHandles(), before);
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
  CreateFolders(place.CurrentFile());
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  const int before = CountOpenHandles();

  for (int run = 0; run < 10; ++run) {
    EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 5);
  }

  EXPECT_EQ(CountOpenHandles(), before);
}

}  // namespace
}  // namespace nhupdate_test
