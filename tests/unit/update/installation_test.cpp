// The install sequence of the install mode.

#include <gtest/gtest.h>

#include "base/existence.h"
#include "base/paths.h"
#include "tests/support/product_keys.h"
#include "tests/unit/update/install_sequence_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using nhupdate::InstallKind;

const Lines kFunctionLine = {L"2|Function : Install"};
const Lines kNimbaDeskLines = {L"2|Install ND begin.", L"2|Install ND end."};

// NimbaCast gets a copy of the updater's folder, in which there is no updater.
Lines NimbaCastLines() {
  const std::wstring from = L"{base}\\Updater";
  const std::wstring to = L"{root}\\NimbaCast\\Updater";
  Lines lines = {L"2|Install NCS begin.", L"2|Copy folder from " + from + L" to " + to};
  for (const wchar_t* file : {L"\\App\\new.txt", L"\\Config\\ut.ini", L"\\Temp\\part.bin"}) {
    const std::wstring folder = nhupdate::ParentFolder(file);
    lines.push_back(L"2|Copy folder from " + from + folder + L" to " + to + folder);
    lines.push_back(L"2|Copy file from " + from + file + L" to " + to + file);
  }
  return Join({lines,
               DownloadNimbaCastLines(),
               {L"4|Update.exe not found : {root}\\NimbaCast\\Updater\\Updater.exe"}});
}

// Its first file can't be copied.
Lines FailedNimbaCastLines() {
  Lines lines = NimbaCastLines();
  lines.resize(4);
  return Join({lines, {L"4|Fail to copy file = 112", L"4|Failed to copy NCS updater folder."}});
}

class InstallationTest : public InstallSequenceTest {};

TEST_F(InstallationTest, PutsTheProductIntoPlaceAndThenItsSibling) {
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kInstallation);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({kFunctionLine, NothingToStopLines(), GrantedLines(), CopiedLines(),
                  RegisteredLines(), NimbaCastLines(), kNimbaDeskLines}));
  EXPECT_EQ(registry_.Text(kProductKey, L"AppPath"), product_.Root());
}

TEST_F(InstallationTest, RemovesNoEmptyFolder) {
  CreateFolders(product_.Base() + L"\\Empty\\Inner");
  ScriptedShell shell({});

  std::ignore = Manager().InstallSequence(InstallKind::kInstallation);

  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\Empty\\Inner"));
}

TEST_F(InstallationTest, NeitherCopiesNorRegistersBesideAnotherCopy) {
  FakeProcessTable processes({StubbornCopy()});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kInstallation);

  EXPECT_EQ(result, 1);
  EXPECT_EQ(product_.Transcript(), Join({kFunctionLine, NotStoppedLines(), GrantedLines(),
                                         NimbaCastLines(), kNimbaDeskLines}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kNeedStopText, kCaption)));
  EXPECT_TRUE(registry_.IsEmpty());
  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\old.txt"));
}

TEST_F(InstallationTest, DoesNotRegisterWhatWasNotCopied) {
  ScriptedShell shell({});
  const FailingCopy copy(ERROR_DISK_FULL);

  const int result = Manager().InstallSequence(InstallKind::kInstallation);

  EXPECT_EQ(result, 2);
  EXPECT_EQ(product_.Transcript(),
            Join({kFunctionLine, NothingToStopLines(), GrantedLines(), NotCopiedLines(),
                  FailedNimbaCastLines(), kNimbaDeskLines}));
  EXPECT_TRUE(registry_.IsEmpty());
}

class InstallationWithoutElevationTest : public InstallSequenceTest {
 protected:
  InstallationWithoutElevationTest() : InstallSequenceTest({.elevated = false}) {}
};

TEST_F(InstallationWithoutElevationTest, EndsBeforeAnythingIsStopped) {
  FakeProcessTable processes({StubbornCopy()});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(InstallKind::kInstallation);

  EXPECT_EQ(result, 10);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Install", L"4|Process not been elevated for install."}));
  EXPECT_EQ(processes.Enumerations(), 0);
  EXPECT_FALSE(NimbaCastFolderExists());
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
