#include <optional>

#include "base/existence.h"
#include "tests/support/failing_copy.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/product_keys.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using nhupdate::InstallKind;

// A product with one staged file, an old one installed, an empty folder, and a registry, processes
// and tools of its own.
class InstallSequenceTest : public WorkflowTest {
 protected:
  explicit InstallSequenceTest(const ProductOptions& options = {}) : WorkflowTest(options) {
    surroundings_.emplace(product_.Facts());
    AddFile(L"\\old.txt");
    AddFile(L"\\Updater\\App\\new.txt");
    AddFile(L"\\Updater\\Config\\ut.ini");
    AddFile(L"\\Updater\\Temp\\part.bin");
    CreateFolders(product_.Base() + L"\\Empty\\Inner");
  }

  // The golden files lie beside the test program, and not where the surroundings say.
  void TearDown() override {
    surroundings_.reset();
    WorkflowTest::TearDown();
  }

  // Both kinds, each in a state that is the same at its beginning.
  void TellRun(InstallKind kind) {
    const ScriptedShell shell({});
    Tell(Manager().InstallSequence(kind));
    EXPECT_EQ(Exists(product_.Base() + L"\\Empty"), kind == InstallKind::kInstallation);
    EXPECT_EQ(Exists(product_.Root() + L"\\NimbaCast"), kind == InstallKind::kInstallation);
  }

  static FakeProcess StubbornCopy() {
    return {.id = 4242, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true};
  }

  std::optional<ProductSurroundings> surroundings_;
  RecordedTools tools_;
  FakeProcessTable no_processes_;
  ScratchRegistry registry_;
};

TEST_F(InstallSequenceTest, PutsTheProductIntoPlaceAndThenItsSibling) {
  TellRun(InstallKind::kInstallation);

  EXPECT_EQ(registry_.Text(kProductKey, L"AppPath"), product_.Root());
}

TEST_F(InstallSequenceTest, AsTheLastStagePutsTheProductIntoPlaceAndRemovesEmptyFolders) {
  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_EQ(registry_.Text(kProductKey, L"AppPath"), product_.Root());
}

TEST_F(InstallSequenceTest, ForgetsTheFoldersItRemoved) {
  std::ignore = Manager().InstallSequence(InstallKind::kLastUpdateStage);
  AddFile(L"\\Empty\\file.txt");

  std::ignore = Manager().InstallSequence(InstallKind::kLastUpdateStage);

  EXPECT_TRUE(Exists(product_.Base() + L"\\Empty\\file.txt"));
}

TEST_F(InstallSequenceTest, NeitherCopiesNorRegistersBesideAnotherCopy) {
  const FakeProcessTable processes({StubbornCopy()});

  TellRun(InstallKind::kInstallation);
  RemoveTree(product_.Root() + L"\\NimbaCast");
  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_TRUE(registry_.IsEmpty());
  EXPECT_TRUE(Exists(product_.Base() + L"\\old.txt"));
}

TEST_F(InstallSequenceTest, DoesNotRegisterWhatWasNotCopied) {
  const FailingCopy copy(ERROR_DISK_FULL);

  TellRun(InstallKind::kInstallation);
  RemoveTree(product_.Root() + L"\\NimbaCast");
  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_TRUE(registry_.IsEmpty());
}

TEST_F(InstallSequenceTest, IsDoneEvenIfTheRegistrationFailed) {
  const INTERPOSER(RegSetValueExW) set_value([](HKEY, const wchar_t*, DWORD, DWORD, const BYTE*,
                                                DWORD) { return LSTATUS{ERROR_ACCESS_DENIED}; });

  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_EQ(set_value.Calls(), 12);
}

class UnelevatedInstallSequenceTest : public InstallSequenceTest {
 protected:
  UnelevatedInstallSequenceTest() : InstallSequenceTest({.elevated = false}) {}
};

TEST_F(UnelevatedInstallSequenceTest, EndsBeforeAnythingIsStopped) {
  const FakeProcessTable processes({StubbornCopy()});
  const ScriptedShell shell({});

  Tell("Installation", Manager().InstallSequence(InstallKind::kInstallation));
  Tell("FinalUpdate", Manager().FinalUpdate());

  EXPECT_EQ(processes.Enumerations(), 0);
  EXPECT_FALSE(Exists(product_.Root() + L"\\NimbaCast"));
}

TEST_F(UnelevatedInstallSequenceTest, AsTheLastStageLeavesTheTestToItsCallerButGrantsNothing) {
  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_THAT(tools_.Started(), testing::IsEmpty());
}

using FinalUpdateTest = InstallSequenceTest;

TEST_F(FinalUpdateTest, IsTheLastStage) {
  Tell(Manager().FinalUpdate());
}

}  // namespace
}  // namespace nhupdate_test
