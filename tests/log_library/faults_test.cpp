// What Windows refuses, and what other processes do to the mutex.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

const std::wstring kFullFile(16 * 1024, L'x');
// The mutex belongs to the whole machine, so another writer may have it for a moment.
constexpr DWORD kPatienceMs = 3000;
constexpr wchar_t kMutexName[] = L"Global\\NHUpdateManager.log";

TEST(LogFaultsTest, AFullDiskLosesTheRecordAndNoneAfterIt) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(L"before");
  {
    Interposer<decltype(::WriteFile)> write(
        library.Module(), "WriteFile",
        [](HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) -> BOOL {
          *written = 0;
          ::SetLastError(ERROR_DISK_FULL);
          return FALSE;
        });
    library.Write(L"lost");
    EXPECT_EQ(write.Calls(), 1);
  }
  library.Write(L"after");

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("before", "after"));
}

TEST(LogFaultsTest, ARecordThatWasCutShortDoesNotTakeTheNextOneWithIt) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  {
    Interposer<decltype(::WriteFile)> write(
        library.Module(), "WriteFile",
        [&](HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
          return write.Original()(file, data, size - 5, written, overlapped);
        });
    library.Write(L"cut short");
  }
  library.Write(L"whole");
  library.Write(L"whole again");

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("cut s", "whole", "whole again"));
}

TEST(LogFaultsTest, WithoutTheMutexRecordsAreWrittenButNothingIsRotated) {
  const LogPlace place("MaxFileSizeKB=16\n");
  LoadedLogLibrary library;
  int result = 1;
  {
    Interposer<decltype(::CreateMutexExW)> create(
        library.Module(), "CreateMutexExW",
        [](SECURITY_ATTRIBUTES*, const wchar_t*, DWORD, DWORD) -> HANDLE {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return nullptr;
        });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadTexts(place.CurrentFile()).size(), 2u);
  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(LogFaultsTest, AMutexThatIsNeverReleasedDelaysOneRecordOnly) {
  const LogPlace place("MaxFileSizeKB=16\n");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  std::vector<DWORD> waits;
  {
    Interposer<decltype(::WaitForSingleObject)> wait(library.Module(), "WaitForSingleObject",
                                                     [&](HANDLE, DWORD milliseconds) -> DWORD {
                                                       waits.push_back(milliseconds);
                                                       return WAIT_TIMEOUT;
                                                     });
    library.Write(L"one");
    library.Write(L"two");
    library.Write(kFullFile);
    library.Write(L"three");
  }
  library.Write(L"four");

  EXPECT_THAT(waits, ElementsAre(1000u, 0u, 0u, 0u));
  EXPECT_EQ(ReadTexts(place.CurrentFile()).size(), 5u);
  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(LogFaultsTest, AMutexOfAThreadThatEndedInItsTurnIsTakenOver) {
  const LogPlace place("MaxFileSizeKB=16\n");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  const nhupdate::UniqueKernelHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, kMutexName));
  ASSERT_TRUE(mutex.IsValid());
  const nhupdate::UniqueKernelHandle thread(::CreateThread(
      nullptr, 0,
      [](void* mutex_of_others) -> DWORD {
        return ::WaitForSingleObject(mutex_of_others, INFINITE);
      },
      mutex.Get(), 0, nullptr));
  ::WaitForSingleObject(thread.Get(), INFINITE);

  library.Write(L"next");

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(LogFaultsTest, TheMutexIsFreeBetweenTheRecords) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  library.Write(L"record");

  const nhupdate::UniqueKernelHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, kMutexName));
  DWORD result = WAIT_FAILED;
  // A thread of its own, since the one that has a mutex gets it any number of times.
  struct Attempt {
    HANDLE mutex;
    DWORD* result;
  } attempt = {mutex.Get(), &result};
  const nhupdate::UniqueKernelHandle thread(::CreateThread(
      nullptr, 0,
      [](void* parameter) -> DWORD {
        const auto& wanted = *static_cast<Attempt*>(parameter);
        *wanted.result = ::WaitForSingleObject(wanted.mutex, kPatienceMs);
        ::ReleaseMutex(wanted.mutex);
        return 0;
      },
      &attempt, 0, nullptr));
  ::WaitForSingleObject(thread.Get(), INFINITE);
  EXPECT_EQ(result, static_cast<DWORD>(WAIT_OBJECT_0));
}

}  // namespace
}  // namespace nhupdate_test
