// What comes through the library's four entries, and what is left when it goes.

#include <atomic>
#include <thread>

#include "log_library/record_time.h"
#include "tests/log_library/test_log.h"
#include "tests/support/open_handles.h"

namespace nhupdate_test {
namespace {

TEST(LogLifetimeTest, StopMayBeCalledAnyNumberOfTimes) {
  TestLog log;

  log.Stop();
  EXPECT_EQ(log.Start(), 0);
  log.Write(L"one");
  log.Stop();
  log.Stop();
  log.Write(L"ignored");
  log.Flush();
  EXPECT_EQ(log.Start(), 0);
  log.Write(L"two");
  log.Stop();

  EXPECT_THAT(log.Texts(), ElementsAre("one", "two"));
}

TEST(LogLifetimeTest, FlushBringsTheFileToTheDisk) {
  StartedLog log;
  BOOL result = FALSE;
  INTERPOSER(FlushFileBuffers) flush(log.Module(),
                                     [&](HANDLE file) { return result = flush.Original()(file); });

  log.Flush();

  EXPECT_EQ(flush.Calls(), 1);
  EXPECT_TRUE(result);
}

TEST(LogLifetimeTest, StopClosesTheFile) {
  StartedLog log;

  log.Stop();

  const HeldFile alone(log.CurrentFile());
}

void RunWithoutStop(const LogPlace& place) {
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"record");
}

TEST(LogLifetimeTest, BeingUnloadedWithoutAStopLeaksNoHandle) {
  const LogPlace place;
  RunWithoutStop(place);
  const int before = CountOpenHandles();

  for (int run = 0; run < 10; ++run) {
    RunWithoutStop(place);
  }

  EXPECT_EQ(CountOpenHandles(), before);
}

TEST(LogLifetimeTest, StopGivesBackTheAddressesOfTheMemoryThatWritersShare) {
  TestLog log;
  const void* view = nullptr;
  INTERPOSER(MapViewOfFile) map(log.Module(), [&](auto... all) {
    void* const mapped = map.Original()(all...);
    view = mapped;
    return mapped;
  });
  ASSERT_EQ(log.Start(), 0);
  MEMORY_BASIC_INFORMATION information = {};
  ::VirtualQuery(view, &information, sizeof(information));
  ASSERT_EQ(information.State, DWORD{MEM_COMMIT});

  log.Stop();

  ::VirtualQuery(view, &information, sizeof(information));
  EXPECT_EQ(information.State, DWORD{MEM_FREE});
}

// Ends the process as one ends whose log is open: nothing is unloaded before.
[[noreturn]] void EndProcessWithOpenLog() {
  constexpr UINT kSomethingWasClosed = 77;
  auto& log = *new StartedLog;
  new INTERPOSER(CloseHandle)(log.Module(), [](HANDLE) -> BOOL {
    ::TerminateProcess(::GetCurrentProcess(), kSomethingWasClosed);
    return FALSE;
  });
  ::ExitProcess(0);
}

// Windows closes everything then, and the heap may be left as a thread had it that is no more.
TEST(LogLifetimeDeathTest, NothingIsClosedAtTheEndOfTheProcess) {
  EXPECT_EXIT(EndProcessWithOpenLog(), testing::ExitedWithCode(0), "");
}

TEST(LogLifetimeTest, FailedStartsLeakNoHandle) {
  TestLog log;
  const std::wstring file = log.Outside(L"file");
  WriteFileBytes(file, "x");
  ASSERT_EQ(log.Start(log.Settings(), file), 2);
  const int before = CountOpenHandles();

  for (int run = 0; run < 10; ++run) {
    EXPECT_EQ(log.Start(log.Settings(), file), 2);
  }

  EXPECT_EQ(CountOpenHandles(), before);
}

std::string TimeNow() {
  constexpr std::size_t kUnitsWithoutOffset = 23;
  std::string now;
  AppendRecordTime(now, CurrentRecordTime());
  return now.substr(0, kUnitsWithoutOffset);
}

TEST(LogRecordTest, CarriesTimeIdsLevelTagAndText) {
  StartedLog log;
  const std::string earliest = TimeNow();

  log.Write(3, L"NHUpdateManager", L"Copy fail, sleep 3 seconds and retry.");

  const auto records = ReadRecords(log.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].process_id, ::GetCurrentProcessId());
  EXPECT_EQ(records[1].thread_id, ::GetCurrentThreadId());
  EXPECT_EQ(records[1].level, "WARN");
  EXPECT_EQ(records[1].tag, "NHUpdateManager");
  EXPECT_EQ(records[1].text, "Copy fail, sleep 3 seconds and retry.");
  EXPECT_GE(records[1].time.substr(0, earliest.size()), earliest);
  EXPECT_LE(records[1].time.substr(0, earliest.size()), TimeNow());
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
      log.Write(level, L"test", std::to_wstring(level).c_str());
    }

    EXPECT_EQ(log.Texts(), test.written) << test.settings;
  }
}

TEST(LogRecordTest, IsOneWriteOfAnyLength) {
  StartedLog log;
  const INTERPOSER(WriteFile) write(log.Module());

  log.Write(std::wstring(1024 * 1024, L'\u4E2D'));
  log.Write(L"short");

  const std::vector<std::string> texts = log.Texts();
  EXPECT_EQ(write.Calls(), 2);
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0].size(), 3u * 1024 * 1024);
  EXPECT_EQ(texts[1], "short");
}

// A length in bytes, of which a unit may become five, still fits what one write can be told.
TEST(LogRecordTest, IsCutAt64MiUnitsOfText) {
  constexpr std::size_t kMaxUnits = 64 * 1024 * 1024;
  StartedLog log;
  std::size_t units = 0;
  INTERPOSER(WriteFile) write(
      log.Module(), [&](HANDLE, const void* bytes, DWORD size, DWORD* written, auto...) -> BOOL {
        const std::string_view record(static_cast<const char*>(bytes), size);
        units = record.find_last_of('x') - record.find_first_of('x') + 1;
        *written = size;
        return TRUE;
      });

  log.Write(std::wstring(kMaxUnits + 1, L'x'));

  EXPECT_EQ(units, kMaxUnits);
}

// The turn would keep the threads apart too, so no thread gets it here.
TEST(LogRecordTest, OfAnotherThreadWaitsForTheOneThatIsBeingWritten) {
  constexpr int kRecords = 20;
  StartedLog log;
  std::atomic<int> writing = 0;
  std::atomic<bool> has_overlapped = false;
  const INTERPOSER(WaitForSingleObject) no_turn(log.Module(), Answers(DWORD{WAIT_TIMEOUT}));
  const INTERPOSER(WriteFile) write(log.Module(), [&](auto...) {
    if (++writing > 1) {
      has_overlapped = true;
    }
    ::Sleep(1);
    --writing;
  });
  const auto write_all = [&] {
    for (int record = 0; record < kRecords; ++record) {
      log.Write(2, nullptr, nullptr);
    }
  };

  std::thread other(write_all);
  write_all();
  other.join();

  EXPECT_FALSE(has_overlapped);
  EXPECT_EQ(log.Texts(), std::vector<std::string>(2 * kRecords));
}

TEST(LogRecordTest, TakesNullForEmpty) {
  StartedLog log;

  log.Write(2, nullptr, nullptr);

  const auto records = ReadRecords(log.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].tag, "");
  EXPECT_EQ(records[1].text, "");
}

TEST(LogRecordTest, IsThereBeforeAnyFlushOrStop) {
  StartedLog log;

  log.Write(L"at once");

  EXPECT_THAT(log.Texts(), ElementsAre("at once"));
}

}  // namespace
}  // namespace nhupdate_test
