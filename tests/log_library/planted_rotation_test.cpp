// Every user may put things into the log folder, for an elevated writer to stumble over when it
// rotates and deletes files.

#include "log_library/file_names.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"
#include "tests/support/folder_link.h"

namespace nhupdate_test {
namespace {

// A log with small files, of which ten are kept, and a file outside of its folder.
class PlantedRotationTest : public testing::Test {
 protected:
  PlantedRotationTest() { WriteFileBytes(victim_, "precious"); }
  ~PlantedRotationTest() override { EXPECT_EQ(ReadFileBytes(victim_), "precious"); }

  TestLog log_{"MaxFileSizeKB=16\nMaxFiles=10\n"};
  const std::wstring victim_ = log_.Outside(L"victim");
};

TEST_F(PlantedRotationTest, ALinkPlantedWhileTheLogIsRotatedIsNotWrittenThrough) {
  ASSERT_EQ(log_.Start(), 0);
  log_.Write(kFullFile);
  INTERPOSER(SetFileInformationByHandle) rename(log_.Module(), [&](auto... all) {
    const BOOL done = rename.Original()(all...);
    CreateLink(log_.CurrentFile(), victim_);
    return done;
  });

  log_.Write(L"next");

  EXPECT_THAT(log_.RotatedTexts(1), ElementsAre(kFullFileText));
  EXPECT_THAT(log_.RotatedTexts(2), ElementsAre("next"));
}

TEST_F(PlantedRotationTest, NamesThatAreTakenArePassedOverWhateverIsThere) {
  CreateFolders(log_.RotatedFile(1));
  CreateLink(log_.RotatedFile(2), victim_);
  ASSERT_TRUE(::CreateHardLinkW(log_.RotatedFile(3).c_str(), victim_.c_str(), nullptr));
  WriteFileBytes(log_.Folder() + L"\\NHUPDATEMANAGER.4.LOG", "x");
  ASSERT_EQ(log_.Start(), 0);

  log_.Write(kFullFile);
  log_.Write(L"next");

  EXPECT_THAT(log_.RotatedTexts(5), ElementsAre(kFullFileText));
  EXPECT_THAT(log_.Texts(), ElementsAre("next"));
}

TEST_F(PlantedRotationTest, AFileThatAppearsUnderTheNewNameIsNotReplaced) {
  ASSERT_EQ(log_.Start(), 0);
  log_.Write(kFullFile);
  const INTERPOSER(SetFileInformationByHandle) rename(
      log_.Module(), [&](auto...) { WriteFileBytes(log_.RotatedFile(1), "precious"); });

  log_.Write(L"next");

  EXPECT_EQ(ReadFileBytes(log_.RotatedFile(1)), "precious");
  EXPECT_THAT(log_.Texts(), ElementsAre("next"));
}

TEST_F(PlantedRotationTest, AFileThatAppearsUnderEachNewNameStopsRotationForASecond) {
  const FakeUptime uptime(log_.Module());
  ASSERT_EQ(log_.Start(), 0);
  log_.Write(kFullFile);
  const INTERPOSER(SetFileInformationByHandle) rename(log_.Module(),
                                                      Answers(FALSE, ERROR_ALREADY_EXISTS));

  log_.Write(L"next");
  log_.Write(L"and on");

  EXPECT_EQ(rename.Calls(), 4);
  EXPECT_THAT(log_.Texts(), ElementsAre(kFullFileText, "next", "and on"));
}

TEST_F(PlantedRotationTest, DeletingRotatedFilesLeavesAloneWhatLinksLeadTo) {
  WriteFileBytes(log_.Settings(), "[Log]\r\nMaxFiles=1\n");
  WriteFileBytes(log_.Outside(L"folder\\file"), "precious");
  CreateFolders(log_.RotatedFile(1) + L"\\inside");
  CreateLink(log_.RotatedFile(2), victim_);
  ASSERT_TRUE(::CreateHardLinkW(log_.RotatedFile(3).c_str(), victim_.c_str(), nullptr));
  CreateLink(log_.RotatedFile(4), log_.Outside(L"folder"));

  EXPECT_EQ(log_.Start(), 0);

  EXPECT_EQ(ReadFileBytes(log_.Outside(L"folder\\file")), "precious");
  EXPECT_TRUE(Exists(log_.RotatedFile(1) + L"\\inside"));
  EXPECT_FALSE(Exists(log_.RotatedFile(3)));
}

TEST_F(PlantedRotationTest, TheHighestNumberDoesNotStopRotation) {
  WriteFileBytes(log_.RotatedFile(999'999'999), "x");
  ASSERT_EQ(log_.Start(), 0);

  log_.Write(kFullFile);
  log_.Write(kFullFile);
  log_.Write(L"next");

  EXPECT_TRUE(Exists(log_.RotatedFile(1)));
  EXPECT_TRUE(Exists(log_.RotatedFile(2)));
}

// A folder whose listing never ends.
TEST_F(PlantedRotationTest, AnyNumberOfPlantedNamesKeepsNobodyWaiting) {
  constexpr int kNeverEnding = 20'000;
  WriteFileBytes(log_.RotatedFile(1), "x");
  int deletions = 0;
  int deletions_in_a_turn = 0;
  bool is_in_a_turn = false;
  const INTERPOSER(WaitForSingleObject) enter(log_.Module(), [&](auto...) { is_in_a_turn = true; });
  const INTERPOSER(ReleaseMutex) leave(log_.Module(), [&](auto...) { is_in_a_turn = false; });
  INTERPOSER(FindNextFileW) next(log_.Module(), [&](HANDLE, WIN32_FIND_DATAW* entry) -> BOOL {
    if (next.Calls() > kNeverEnding) {
      return FALSE;  // so that the test does
    }
    const std::wstring name = RotatedName(static_cast<unsigned>(next.Calls() + 1));
    std::copy_n(name.c_str(), name.size() + 1, entry->cFileName);
    return TRUE;
  });
  const INTERPOSER(CreateFileW) create(log_.Module(), [&](const wchar_t*, DWORD access, auto...) {
    if ((access & DELETE) != 0) {
      ++deletions;
      deletions_in_a_turn += is_in_a_turn ? 1 : 0;
    }
  });

  EXPECT_EQ(log_.Start(), 0);

  EXPECT_EQ(next.Calls(), 9999);  // behind the first one
  EXPECT_EQ(deletions, 64);
  EXPECT_EQ(deletions_in_a_turn, 0);
  EXPECT_EQ(leave.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
