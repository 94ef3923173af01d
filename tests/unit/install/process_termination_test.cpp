#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_process_table.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

// The manager must be started before the process table is faked.
class TerminateProcessByNameTest : public testing::Test {
 protected:
  TerminateProcessByNameTest() {
    product_.Start();
    product_.ForgetRecords();
  }

  InstalledProduct product_;
};

TEST_F(TerminateProcessByNameTest, EndsEveryProcessOfThatName) {
  const FakeProcessTable table({{.id = 4, .image_path = L"C:\\other.exe"},
                                {.id = 8, .image_path = L"C:\\A\\target.exe"},
                                {.id = 12, .image_path = L"D:\\B\\target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(8) found, terminate it.",
                          L"2|Target process target.exe(12) found, terminate it."));
}

TEST_F(TerminateProcessByNameTest, OpensTerminatesWaitsAndClosesThenLooksAgain) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\target.exe"}, {.id = 12, .image_path = L"C:\\other.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(table.Calls(),
              ElementsAre(L"Enumerate 4096",                                       //
                          L"Open 0x410 0 8", L"QueryImageName 0 260", L"Close 8",  //
                          L"Open 0x100001 0 8", L"Terminate 8 0", L"Wait 8 3000", L"Close 8",
                          L"Open 0x410 0 12", L"QueryImageName 0 260", L"Close 12",  //
                          L"Enumerate 4096",                                         //
                          L"Open 0x410 0 12", L"QueryImageName 0 260", L"Close 12"));
  EXPECT_EQ(table.OpenHandles(), 0);
}

TEST_F(TerminateProcessByNameTest, SaysThatThereIsNoneWhenThereIsNone) {
  const FakeProcessTable table({{.id = 4, .image_path = L"C:\\target.exe.exe"},
                                {.id = 8, .image_path = L"C:\\target.exe\\other.exe"},
                                {.id = 12, .image_path = L"C:\\my target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Target process target.exe not found."));
}

TEST_F(TerminateProcessByNameTest, SkipsTheCallingProcessWhichDoesNotCountAsFound) {
  const FakeProcessTable table({{.id = FakeProcessTable::kOwnId, .image_path = L"C:\\target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Skip terminate current process target.exe({pid}).",
                          L"2|Target process target.exe not found."));
}

TEST_F(TerminateProcessByNameTest, ComparesNamesWithoutRegardToLetterCase) {
  const FakeProcessTable table({{.id = 8, .image_path = L"C:\\tARGET.EXE"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"Target.exe"), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process tARGET.EXE(8) found, terminate it."));
}

TEST_F(TerminateProcessByNameTest, MatchesANameThatOnlyTheDevicePathTells) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"", .device_path = L"\\Device\\HarddiskVolume1\\target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(8) found, terminate it."));
}

TEST_F(TerminateProcessByNameTest, NeverOpensTheIdleProcessForTermination) {
  const FakeProcessTable table({{.id = 0, .image_path = L"C:\\target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 0);

  EXPECT_THAT(table.Calls(), testing::Not(testing::Contains(L"Open 0x100001 0 0")));
  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(0) found, terminate it.",
                          L"4|Process target.exe(0) still found."));
}

TEST_F(TerminateProcessByNameTest, DoesNotSeeProcessesThatItMayNotRead) {
  const FakeProcessTable table({{.id = 8, .image_path = L"C:\\target.exe", .can_be_read = false}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Target process target.exe not found."));
}

TEST_F(TerminateProcessByNameTest, ReportsAProcessThatDeniesItsTermination) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\target.exe", .can_be_terminated = false},
       {.id = 12, .image_path = L"C:\\target.exe"}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(8) found, terminate it.",
                          L"2|Target process target.exe(12) found, terminate it.",
                          L"4|Process target.exe(8) still found."));
  EXPECT_EQ(table.OpenHandles(), 0);
}

TEST_F(TerminateProcessByNameTest, ReportsEveryProcessThatSurvivesTheWait) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\target.exe", .ends_when_terminated = false},
       {.id = 12, .image_path = L"C:\\target.exe", .ends_when_terminated = false}});

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(8) found, terminate it.",
                          L"2|Target process target.exe(12) found, terminate it.",
                          L"4|Process target.exe(8) still found.",
                          L"4|Process target.exe(12) still found."));
  EXPECT_EQ(table.OpenHandles(), 0);
}

TEST_F(TerminateProcessByNameTest, SeesNoProcessesWhenTheyCannotBeListed) {
  FakeProcessTable table({{.id = 8, .image_path = L"C:\\target.exe"}});
  table.FailToEnumerate();

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(table.Calls(), ElementsAre(L"Enumerate 4096", L"Enumerate 4096"));
  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Target process target.exe not found."));
}

std::vector<FakeProcess> CrowdWithTargetAt(std::size_t index) {
  std::vector<FakeProcess> crowd;
  for (DWORD number = 0; number < 1500; ++number) {
    crowd.push_back({.id = 4 * (number + 1), .image_path = L"C:\\other.exe"});
  }
  crowd[index].image_path = L"C:\\target.exe";
  return crowd;
}

TEST_F(TerminateProcessByNameTest, ExaminesTheThousandAndTwentyFourthProcess) {
  const FakeProcessTable table(CrowdWithTargetAt(1023));

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process target.exe(4096) found, terminate it."));
}

TEST_F(TerminateProcessByNameTest, ExaminesNoFurtherProcess) {
  const FakeProcessTable table(CrowdWithTargetAt(1024));

  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"target.exe"), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Target process target.exe not found."));
}

}  // namespace
}  // namespace nhupdate_test
