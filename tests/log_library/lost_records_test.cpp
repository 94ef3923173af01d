// Records for which there was no room on the disk.

#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

enum class Room { kNone, kAllButFiveBytes, kEnough };

// A disk with that much room for the library's writes, one after the other, and then enough.
class ScriptedDisk {
 public:
  ScriptedDisk(HMODULE library, std::vector<Room> rooms)
      : rooms_(std::move(rooms)),
        write_(library,
               [this](HANDLE file, const void* data, DWORD size, DWORD* written,
                      auto... rest) -> BOOL {
                 const Room room = next_ < rooms_.size() ? rooms_[next_] : Room::kEnough;
                 ++next_;
                 if (room == Room::kNone) {
                   *written = 0;
                   ::SetLastError(ERROR_DISK_FULL);
                   return FALSE;
                 }
                 const DWORD taken = room == Room::kEnough ? size : size - 5;
                 return write_.Original()(file, data, taken, written, rest...);
               }) {}

  [[nodiscard]] std::size_t Writes() const { return next_; }

 private:
  std::vector<Room> rooms_;
  std::size_t next_ = 0;
  INTERPOSER(WriteFile) write_;
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

TEST(LostRecordsTest, AreCountedInAWarningBeforeTheNextOneThatIsWritten) {
  using enum Room;
  const struct {
    const char* name;
    std::vector<Room> rooms;
    std::vector<std::wstring> texts;
    std::vector<std::string> written;
    std::size_t writes;
  } cases[] = {
      {"several",
       {kEnough, kNone, kNone, kNone},
       {L"before", L"lost", L"lost", L"lost", L"after", L"and on"},
       {"INFO|test|before", Loss("3"), "INFO|test|after", "INFO|test|and on"},
       7},
      {"one that was cut short",
       {kAllButFiveBytes},
       {L"cut short", L"whole", L"whole again"},
       {"INFO|test|cut s", Loss("1"), "INFO|test|whole", "INFO|test|whole again"},
       4},
      {"the warning is lost too",
       {kNone, kNone, kNone},
       {L"lost", L"lost with its report", L"lost with its report", L"after"},
       {Loss("3"), "INFO|test|after"},
       5},
      {"the warning is cut short",
       {kNone, kAllButFiveBytes},
       {L"lost", L"lost with its report", L"after"},
       {Loss("1").substr(0, Loss("1").size() - 4), Loss("2"), "INFO|test|after"},
       4},
      {"more behind the warning",
       {kNone, kEnough, kNone},
       {L"lost", L"lost behind the report", L"after"},
       {Loss("1"), Loss("1"), "INFO|test|after"},
       5},
  };
  for (const auto& test : cases) {
    StartedLog log;
    const ScriptedDisk disk(log.Module(), test.rooms);

    for (const std::wstring& text : test.texts) {
      log.Write(text);
    }

    EXPECT_EQ(ReadAllBehindTheHeader(log), test.written) << test.name;
    EXPECT_EQ(disk.Writes(), test.writes) << test.name;
  }
}

TEST(LostRecordsTest, AreToldOfWhateverTheLevel) {
  StartedLog log("Level=4\n");
  const ScriptedDisk disk(log.Module(), {Room::kNone});

  log.Write(4, L"test", L"lost");
  log.Write(3, L"test", L"below the level");
  log.Write(4, L"test", L"after");

  EXPECT_THAT(ReadAllBehindTheHeader(log), ElementsAre(Loss("1"), "ERROR|test|after"));
}

TEST(LostRecordsTest, CountTheHeaderRecord) {
  TestLog log;
  const ScriptedDisk disk(log.Module(), {Room::kNone});

  EXPECT_EQ(log.Start(), 0);
  log.Write(L"after");

  EXPECT_THAT(ReadAllBehindTheHeader(log), ElementsAre(Loss("1"), "INFO|test|after"));
}

// On a file system that doesn't number its files too, where all of them are like one that is
// closed.
TEST(LostRecordsTest, CountThoseForWhichThereIsNoFileAnyMore) {
  TestLog log;
  INTERPOSER(GetFileInformationByHandle) number(
      log.Module(), [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
        const BOOL done = number.Original()(file, information);
        information->dwVolumeSerialNumber = 0;
        information->nFileIndexHigh = 0;
        information->nFileIndexLow = 0;
        return done;
      });
  ASSERT_EQ(log.Start(), 0);
  ASSERT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"deleted.log").c_str()));
  {
    INTERPOSER(GetFileInformationByHandleEx) inspect(
        log.Module(),
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          const BOOL done = inspect.Original()(file, kind, information, size);
          static_cast<FILE_STANDARD_INFO*>(information)->NumberOfLinks = 0;
          return done;
        });
    const INTERPOSER(CreateFileW) open(log.Module(),
                                       Answers(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));
    log.Write(L"lost");
    log.Write(L"lost");
    EXPECT_EQ(open.Calls(), 4);  // each time for the file and for one in its place
  }

  log.Write(L"after");

  EXPECT_THAT(ReadTexts(log.Outside(L"deleted.log")), ElementsAre());
  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
  EXPECT_THAT(ReadAllBehindTheHeader(log), ElementsAre(Loss("2"), "INFO|test|after"));
}

}  // namespace
}  // namespace nhupdate_test
