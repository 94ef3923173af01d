// A current file that someone else keeps to himself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr char kEarlier[] = "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] earlier\n";
constexpr char kInPlaceOfAHeldFile[] =
    ", in place of NHUpdateManager.log, which another program keeps to itself";

nhupdate::UniqueFile Hold(const LogPlace& place, DWORD sharing) {
  WriteFileBytes(place.CurrentFile(), kEarlier);
  nhupdate::UniqueFile holder(::CreateFileW(place.CurrentFile().c_str(), GENERIC_READ, sharing,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_TRUE(holder.IsValid());
  return holder;
}

TEST(HeldFileTest, IsTriedForHalfASecondAndThenAnotherOneTakesItsPlace) {
  for (const DWORD sharing : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
    const LogPlace place;
    nhupdate::UniqueFile holder = Hold(place, sharing);
    LoadedLogLibrary library;
    DWORD waited_ms = 0;
    int result = 1;
    {
      Interposer<decltype(::Sleep)> sleep(library.Module(), "Sleep",
                                          [&](DWORD milliseconds) { waited_ms += milliseconds; });
      result = library.Start(place.Settings(), place.Folder());
    }
    library.Write(L"record");
    library.Stop();
    holder.Reset();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(waited_ms, 475u);
    EXPECT_EQ(ReadFileBytes(place.CurrentFile()), kEarlier);
    const auto records = ReadRecords(place.RotatedFile(1));
    ASSERT_EQ(records.size(), 2u);
    EXPECT_THAT(records[0].text, StartsWith("Log library "));
    EXPECT_THAT(records[0].text, EndsWith(kInPlaceOfAHeldFile));
    EXPECT_EQ(records[1].text, "record");
  }
}

TEST(HeldFileTest, IsUsedWhenItIsLetGoInTime) {
  const LogPlace place;
  nhupdate::UniqueFile holder = Hold(place, FILE_SHARE_READ);
  LoadedLogLibrary library;
  int result = 1;
  {
    Interposer<decltype(::Sleep)> sleep(library.Module(), "Sleep", [&](DWORD) {
      if (sleep.Calls() == 19) {
        holder.Reset();
      }
    });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(L"record");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("earlier", "record"));
  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(HeldFileTest, IsUsedAgainWithinASecondAfterItWasLetGo) {
  const LogPlace place;
  nhupdate::UniqueFile holder = Hold(place, 0);
  LoadedLogLibrary library;
  FakeUptime uptime(library);
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);

  library.Write(L"held");
  holder.Reset();
  library.Write(L"too soon to be known");
  uptime.Forward(1000);
  library.Write(L"let go");

  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre("held", "too soon to be known"));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("earlier", "let go"));
}

TEST(HeldFileTest, IsReplacedByOneFileAfterTheOtherWhenTheseAreFull) {
  const LogPlace place(kSmallFiles);
  nhupdate::UniqueFile holder = Hold(place, 0);
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);

  library.Write(kFullFile);
  library.Write(L"next");

  const auto records = ReadRecords(place.RotatedFile(2));
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  ASSERT_EQ(records.size(), 2u);
  EXPECT_THAT(records[0].text, EndsWith(kInPlaceOfAHeldFile));
  EXPECT_EQ(records[1].text, "next");
}

// The settings may leave room for no rotated file at all.
TEST(HeldFileTest, IsReplacedByAFileThatNobodyDeletesWhileItIsWritten) {
  const LogPlace place("MaxFiles=1\n");
  nhupdate::UniqueFile holder = Hold(place, 0);
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);

  library.Write(L"one");
  library.Write(L"two");

  EXPECT_FALSE(::DeleteFileW(place.RotatedFile(1).c_str()));
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre("one", "two"));
}

TEST(HeldFileTest, IsLeftAsItIsByAWriterThatGivesUp) {
  const LogPlace place;
  nhupdate::UniqueFile holder = Hold(place, 0);
  LoadedLogLibrary library;
  int result = 0;
  {
    Interposer<decltype(::Sleep)> sleep(library.Module(), "Sleep", [](DWORD) {});
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          if (disposition != CREATE_NEW) {
            return create.Original()(path, access, sharing, security, disposition, flags, model);
          }
          ::SetLastError(ERROR_DISK_FULL);
          return INVALID_HANDLE_VALUE;
        });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(L"ignored");
  holder.Reset();

  EXPECT_EQ(result, 4);
  EXPECT_EQ(ReadFileBytes(place.CurrentFile()), kEarlier);
  EXPECT_THAT(ListTree(place.Folder()), ElementsAre(L"NHUpdateManager.log"));
}

}  // namespace
}  // namespace nhupdate_test
