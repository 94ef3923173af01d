// The install sequence as the last stage of an update.

#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/unit/update/install_sequence_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using nhupdate::InstallKind;

const Lines kRemoveLine = {L"2|Remove empty folder in path : {base}"};
const Lines kRemovedLine = {L"2|Remove empty folder : {base}\\Empty"};

class LastUpdateStageTest : public InstallSequenceTest {
 protected:
  explicit LastUpdateStageTest(const ProductOptions& options = {}) : InstallSequenceTest(options) {
    CreateFolders(EmptyFolder());
  }

  ~LastUpdateStageTest() override { EXPECT_FALSE(NimbaCastFolderExists()); }

  [[nodiscard]] std::wstring EmptyFolder() const { return product_.Base() + L"\\Empty"; }
};

TEST_F(LastUpdateStageTest, PutsTheProductIntoPlaceAndRemovesEmptyFolders) {
  CreateFolders(EmptyFolder() + L"\\Inner");
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({NothingToStopLines(),
                                         GrantedLines(),
                                         CopiedLines(),
                                         RegisteredLines(),
                                         kRemoveLine,
                                         {L"2|Remove empty folder : {base}\\Empty\\Inner"},
                                         kRemovedLine}));
  EXPECT_FALSE(nhupdate::Exists(EmptyFolder()));
}

TEST_F(LastUpdateStageTest, ForgetsTheFoldersItRemoved) {
  ScriptedShell shell({});
  std::ignore = Manager().InstallSequence(InstallKind::kLastUpdateStage);
  AddFile(L"\\Empty\\file.txt");

  std::ignore = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_TRUE(nhupdate::Exists(EmptyFolder() + L"\\file.txt"));
}

TEST_F(LastUpdateStageTest, OnlyRemovesEmptyFoldersBesideAnotherCopy) {
  FakeProcessTable processes({StubbornCopy()});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_EQ(result, 1);
  EXPECT_EQ(product_.Transcript(),
            Join({NotStoppedLines(), GrantedLines(), kRemoveLine, kRemovedLine}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kNeedStopText, kCaption)));
  EXPECT_TRUE(registry_.IsEmpty());
  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\old.txt"));
  EXPECT_FALSE(nhupdate::Exists(EmptyFolder()));
}

TEST_F(LastUpdateStageTest, DoesNotRegisterWhatWasNotCopiedButRemovesEmptyFolders) {
  ScriptedShell shell({});
  const FailingCopy copy(ERROR_DISK_FULL);

  const int result = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_EQ(result, 2);
  EXPECT_EQ(product_.Transcript(), Join({NothingToStopLines(), GrantedLines(), NotCopiedLines(),
                                         kRemoveLine, kRemovedLine}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(std::wstring(kCommonErrorText) + L"\n" +
                                                         product_.Base() + L"\\new.txt",
                                                     kCaption)));
  EXPECT_TRUE(registry_.IsEmpty());
  EXPECT_FALSE(nhupdate::Exists(EmptyFolder()));
}

TEST_F(LastUpdateStageTest, IsDoneEvenIfTheRegistrationFailed) {
  ScriptedShell shell({});
  INTERPOSER(RegSetValueExW) set_value([](HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
    return LSTATUS{ERROR_ACCESS_DENIED};
  });

  const int result = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(set_value.Calls(), 12);
  EXPECT_EQ(product_.Transcript(), Join({NothingToStopLines(), GrantedLines(), CopiedLines(),
                                         RegisteredLines(), kRemoveLine, kRemovedLine}));
}

class LastUpdateStageWithoutElevationTest : public LastUpdateStageTest {
 protected:
  LastUpdateStageWithoutElevationTest() : LastUpdateStageTest({.elevated = false}) {}
};

TEST_F(LastUpdateStageWithoutElevationTest, LeavesTheTestToTheCallerButGrantsNothing) {
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({NothingToStopLines(), CopiedLines(), RegisteredLines(),
                                         kRemoveLine, kRemovedLine}));
  EXPECT_THAT(tools_.Started(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
