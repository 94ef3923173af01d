// Records for which there was no room on the disk.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

enum class Room { kNone, kAllButFiveBytes, kEnough };

// A disk with that much room for the library's writes, one after the other, and then enough.
class ScriptedDisk {
 public:
  ScriptedDisk(const LoadedLogLibrary& library, std::vector<Room> rooms)
      : rooms_(std::move(rooms)),
        write_(library.Module(), "WriteFile",
               [this](HANDLE file, const void* data, DWORD size, DWORD* written,
                      OVERLAPPED* overlapped) -> BOOL {
                 const Room room = next_ < rooms_.size() ? rooms_[next_] : Room::kEnough;
                 ++next_;
                 if (room == Room::kNone) {
                   *written = 0;
                   ::SetLastError(ERROR_DISK_FULL);
                   return FALSE;
                 }
                 const DWORD taken = room == Room::kEnough ? size : size - 5;
                 return write_.Original()(file, data, taken, written, overlapped);
               }) {}

  [[nodiscard]] std::size_t Writes() const { return next_; }

 private:
  std::vector<Room> rooms_;
  std::size_t next_ = 0;
  Interposer<decltype(::WriteFile)> write_;
};

std::string Loss(const std::string& count) {
  return "WARN|NSWLogDynamic64U|Records before this one that could not be written: " + count;
}

// All but the header record, as level|tag|text.
std::vector<std::string> ReadAllBehindTheHeader(const LogPlace& place) {
  std::vector<std::string> lines;
  for (const LogRecord& record : ReadRecords(place.CurrentFile())) {
    if (!record.text.starts_with("Log library ")) {
      lines.push_back(record.level + "|" + record.tag + "|" + record.text);
    }
  }
  return lines;
}

TEST(LostRecordsTest, AreToldOfOnceBeforeTheNextRecord) {
  StartedLog log;
  const ScriptedDisk disk(log.library, {Room::kEnough, Room::kNone, Room::kNone, Room::kNone});

  for (const wchar_t* text : {L"before", L"lost", L"lost", L"lost", L"after", L"and on"}) {
    log.library.Write(text);
  }

  EXPECT_THAT(ReadAllBehindTheHeader(log.place),
              ElementsAre("INFO|test|before", Loss("3"), "INFO|test|after", "INFO|test|and on"));
  EXPECT_EQ(disk.Writes(), 7u);
}

TEST(LostRecordsTest, CountThoseThatWereCutShort) {
  StartedLog log;
  const ScriptedDisk disk(log.library, {Room::kAllButFiveBytes});

  log.library.Write(L"cut short");
  log.library.Write(L"whole");
  log.library.Write(L"whole again");

  EXPECT_THAT(
      ReadAllBehindTheHeader(log.place),
      ElementsAre("INFO|test|cut s", Loss("1"), "INFO|test|whole", "INFO|test|whole again"));
}

TEST(LostRecordsTest, AreToldOfLaterWhenTheReportIsLostToo) {
  StartedLog log;
  const ScriptedDisk disk(log.library, {Room::kNone, Room::kNone, Room::kNone});

  log.library.Write(L"lost");
  log.library.Write(L"lost with its report");
  log.library.Write(L"lost with its report");
  log.library.Write(L"after");

  EXPECT_THAT(ReadAllBehindTheHeader(log.place), ElementsAre(Loss("3"), "INFO|test|after"));
}

TEST(LostRecordsTest, AreToldOfAgainWhenTheReportWasCutShort) {
  StartedLog log;
  const ScriptedDisk disk(log.library, {Room::kNone, Room::kAllButFiveBytes});

  log.library.Write(L"lost");
  log.library.Write(L"lost with its report");
  log.library.Write(L"after");

  const std::string cut_report = Loss("1").substr(0, Loss("1").size() - 4);
  EXPECT_THAT(ReadAllBehindTheHeader(log.place),
              ElementsAre(cut_report, Loss("2"), "INFO|test|after"));
}

TEST(LostRecordsTest, BehindAReportAreCountedAnew) {
  StartedLog log;
  const ScriptedDisk disk(log.library, {Room::kNone, Room::kEnough, Room::kNone});

  log.library.Write(L"lost");
  log.library.Write(L"lost behind the report");
  log.library.Write(L"after");

  EXPECT_THAT(ReadAllBehindTheHeader(log.place),
              ElementsAre(Loss("1"), Loss("1"), "INFO|test|after"));
}

TEST(LostRecordsTest, AreToldOfWhateverTheLevel) {
  StartedLog log("Level=4\n");
  const ScriptedDisk disk(log.library, {Room::kNone});

  log.library.Write(4, L"test", L"lost");
  log.library.Write(3, L"test", L"below the level");
  log.library.Write(4, L"test", L"after");

  EXPECT_THAT(ReadAllBehindTheHeader(log.place), ElementsAre(Loss("1"), "ERROR|test|after"));
}

TEST(LostRecordsTest, CountTheHeaderRecord) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 1;
  {
    const ScriptedDisk disk(library, {Room::kNone});
    result = library.Start(place.Settings(), place.Folder());
  }

  library.Write(L"after");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadAllBehindTheHeader(place), ElementsAre(Loss("1"), "INFO|test|after"));
}

}  // namespace
}  // namespace nhupdate_test
