// When a file is put aside, and how.

#include "base/existence.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

TEST(LogRotationTest, PutsAFullFileAsideBeforeTheNextRecord) {
  StartedLog log(kSmallFiles);

  log.Write(kFullFile);
  const std::vector<std::wstring> when_full = log.Files();
  log.Write(L"next");

  EXPECT_THAT(when_full, ElementsAre(L"NHUpdateManager.log"));
  EXPECT_THAT(log.RotatedTexts(1), ElementsAre(kFullFileText));
  EXPECT_THAT(log.Texts(), ElementsAre("next"));
}

// The file is of an earlier run and is put aside when this one starts.
TEST(LogRotationTest, PutsAFileAsideFromTheLimitOn) {
  constexpr std::size_t kLimit = 16 * 1024;
  for (const std::size_t size : {kLimit - 1, kLimit, kLimit + 1}) {
    TestLog log(kSmallFiles);
    const std::string head = kEarlierHead;
    const std::string earlier = head + std::string(size - head.size() - 1, 'x') + "\n";
    WriteFileBytes(log.CurrentFile(), earlier);

    EXPECT_EQ(log.Start(), 0);

    const bool is_full = size >= kLimit;
    EXPECT_EQ(Exists(log.RotatedFile(1)), is_full) << size;
    EXPECT_EQ(ReadRecords(log.CurrentFile()).size(), is_full ? 1u : 2u) << size;
    if (is_full) {
      EXPECT_EQ(ReadFileBytes(log.RotatedFile(1)), earlier);
    }
  }
}

// What another process does when it rotates: it renames the file and writes into a new one.
void RotateAsAnother(const LogPlace& place, int number = 1, const std::string& bytes = kEarlier) {
  EXPECT_TRUE(::MoveFileW(place.CurrentFile().c_str(), place.RotatedFile(number).c_str()));
  WriteFileBytes(place.CurrentFile(), bytes);
}

TEST(LogRotationTest, FollowsARotationByAnotherWriterWithTheNextRecord) {
  StartedLog log(kSmallFiles);
  log.Write(kFullFile);
  RotateAsAnother(log);

  log.Write(L"next");

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "next"));
}

TEST(LogRotationTest, FollowsARenameOfAFileThatIsNotFullWithinASecond) {
  StartedLog log(kSmallFiles);
  FakeUptime uptime(log.Module());
  log.Write(L"before");
  ASSERT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"moved.log").c_str()));

  uptime.Forward(1000);
  log.Write(L"after");

  EXPECT_THAT(ReadTexts(log.Outside(L"moved.log")), ElementsAre("before"));
  EXPECT_THAT(log.Texts(), ElementsAre("after"));
}

TEST(LogRotationTest, LooksTheFileUpOnceASecondAndNotForEachRecord) {
  StartedLog log;
  FakeUptime uptime(log.Module());
  uptime.Forward(1000);
  const INTERPOSER(CreateFileW) open(log.Module());

  log.Write(L"looks");
  log.Write(L"doesn't");
  uptime.Forward(999);
  log.Write(L"doesn't");
  EXPECT_EQ(open.Calls(), 1);
  uptime.Forward(1);
  log.Write(L"looks");

  EXPECT_EQ(open.Calls(), 2);
}

// Something happens to the file after it was found to be full and before it is opened for renaming:
// at the moment in which the library lists the folder to find a free name.
template <typename Event>
void WriteWhile(StartedLog& log, Event event) {
  log.Write(kFullFile);
  const INTERPOSER(FindFirstFileExW) list(log.Module(), [&](auto...) {
    if (list.Calls() == 1) {
      event();
    }
  });
  log.Write(L"next");
}

TEST(LogRotationTest, RenamesNoFileThatHasTakenThePlaceOfTheFullOne) {
  StartedLog log(kSmallFiles);

  WriteWhile(log, [&] { RotateAsAnother(log); });

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
  EXPECT_THAT(log.RotatedTexts(1), ElementsAre(kFullFileText));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "next"));
}

TEST(LogRotationTest, MakesANewFileWhenTheFullOneIsGone) {
  StartedLog log(kSmallFiles);

  WriteWhile(log, [&] {
    EXPECT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"gone.log").c_str()));
  });

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
  EXPECT_THAT(ReadTexts(log.Outside(L"gone.log")), ElementsAre(kFullFileText));
  EXPECT_THAT(log.Texts(), ElementsAre("next"));
}

// Rotates the file as another process does, in the very moment in which the library renames it. The
// new name is faked, since Wine would tell the name that the file had when it was opened.
class QuickerWriter {
 public:
  // `bytes` are what it writes into the new file.
  QuickerWriter(const StartedLog& log, const std::string& bytes)
      : rename_(log.Module(),
                [&log, bytes, this](auto... all) {
                  if (rename_.Calls() == 1) {
                    WriteFileBytes(log.RotatedFile(1), "x");
                    RotateAsAnother(log, 2, bytes);
                    has_another_name_ = true;
                  }
                  return rename_.Original()(all...);
                }),
        place_(log.Module(), [this](HANDLE file, wchar_t* path, auto... rest) {
          const DWORD units = place_.Original()(file, path, rest...);
          if (std::exchange(has_another_name_, false)) {
            path[units - 1] = L'?';
          }
          return units;
        }) {}

  // Of the library.
  [[nodiscard]] int Renames() const { return rename_.Calls(); }

 private:
  bool has_another_name_ = false;
  INTERPOSER(SetFileInformationByHandle) rename_;
  INTERPOSER(GetFinalPathNameByHandleW) place_;
};

TEST(LogRotationTest, LeavesAFileAloneThatAnotherWriterHasJustRenamed) {
  StartedLog log(kSmallFiles);
  log.Write(kFullFile);
  const QuickerWriter another(log, kEarlier);

  log.Write(L"next");

  EXPECT_EQ(another.Renames(), 1);
  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.2.log",
                                       L"NHUpdateManager.log"));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "next"));
}

TEST(LogRotationTest, WaitsASecondWhenAnotherWriterHasLeftAFullFileToo) {
  StartedLog log(kSmallFiles);
  FakeUptime uptime(log.Module());
  log.Write(kFullFile);
  const QuickerWriter another(log, kEarlierHead + kFullFileText + "\n");

  log.Write(L"next");
  log.Write(L"too soon");
  EXPECT_EQ(another.Renames(), 1);
  uptime.Forward(1000);
  log.Write(L"a second later");

  EXPECT_EQ(another.Renames(), 2);
  EXPECT_THAT(log.Texts(), ElementsAre("a second later"));
}

TEST(LogRotationTest, IsFollowedWhenItComesWhileTheFileIsOpened) {
  TestLog log(kSmallFiles);
  WriteFileBytes(log.CurrentFile(), kEarlier);
  bool has_come = false;
  INTERPOSER(GetFinalPathNameByHandleW) place(
      log.Module(), [&](HANDLE file, wchar_t* path, DWORD size, DWORD form) {
        const DWORD units = place.Original()(file, path, size, form);
        if (size > units && std::wstring_view(path, units).ends_with(L".log") &&
            !std::exchange(has_come, true)) {
          RotateAsAnother(log);
          path[units - 1] = L'?';  // as for QuickerWriter
        }
        return units;
      });

  EXPECT_EQ(log.Start(), 0);
  log.Write(L"next");

  EXPECT_TRUE(has_come);
  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "next"));
}

// Wine takes a wrong length or too large a buffer as well, so what is passed is looked at.
TEST(LogRotationTest, PassesTheNewNameWithItsLengthAndReplacesNothing) {
  StartedLog log(kSmallFiles);
  log.Write(kFullFile);
  const INTERPOSER(SetFileInformationByHandle) rename(
      log.Module(), [&](HANDLE, FILE_INFO_BY_HANDLE_CLASS kind, void* data, DWORD size) {
        const auto& information = *static_cast<const FILE_RENAME_INFO*>(data);
        const std::wstring name = log.RotatedFile(1);
        EXPECT_EQ(kind, FileRenameInfo);
        EXPECT_EQ(information.ReplaceIfExists, FALSE);
        EXPECT_EQ(information.RootDirectory, nullptr);
        EXPECT_EQ(information.FileNameLength, name.size() * sizeof(wchar_t));
        EXPECT_EQ(information.FileName, name);
        EXPECT_EQ(size, sizeof(FILE_RENAME_INFO) + name.size() * sizeof(wchar_t));
      });

  log.Write(L"next");

  EXPECT_EQ(rename.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
