#include "base/existence.h"
#include "tests/support/answers.h"
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
using testing::ElementsAre;

// A product with one staged file, an old one installed, an empty folder, and a registry, processes
// and tools of its own.
class InstallSequenceTest : public WorkflowTest {
 protected:
  explicit InstallSequenceTest(const ProductOptions& options = {}) : WorkflowTest(options) {
    AddFile(L"\\old.txt");
    AddFile(L"\\Updater\\App\\new.txt");
    AddFile(L"\\Updater\\Config\\ut.ini");
    AddFile(L"\\Updater\\Temp\\part.bin");
    CreateFolders(product_.Base() + L"\\Empty\\Inner");
  }

  int Run(InstallKind kind) {
    const ProductSurroundings surroundings(product_.Facts());
    const ScriptedShell shell({});
    return Manager().InstallSequence(kind);
  }

  void TellRun(InstallKind kind) {
    Tell(Run(kind));
    EXPECT_EQ(Exists(product_.Base() + L"\\Empty"), kind == InstallKind::kInstallation);
    EXPECT_EQ(Exists(product_.Root() + L"\\NimbaCast"), kind == InstallKind::kInstallation);
  }

  // Both kinds, each in a state that is the same at its beginning.
  void TellBothKinds() {
    TellRun(InstallKind::kInstallation);
    RemoveTree(product_.Root() + L"\\NimbaCast");
    TellRun(InstallKind::kLastUpdateStage);
  }

  static FakeProcess StubbornCopy() {
    return {.id = 4242, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true};
  }

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

// The deepest first, and with what came after the scan.
TEST_F(InstallSequenceTest, RemovesTheEmptyFoldersInTheOrderInWhichTheyWereFoundAndForgetsThem) {
  const std::wstring empty = product_.Base() + L"\\Empty";
  std::vector<std::wstring> deleted;
  {
    const INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, auto... rest) {
      if ((access & DELETE) != 0 && std::wstring(path).starts_with(empty)) {
        WriteFileBytes(empty + L"\\late", "x");
        deleted.push_back(path);
      }
      return open.Original()(path, access, rest...);
    });
    EXPECT_EQ(Run(InstallKind::kLastUpdateStage), 0);
  }
  EXPECT_THAT(deleted, ElementsAre(empty + L"\\Inner", empty + L"\\late", empty));

  AddFile(L"\\Empty\\file.txt");
  EXPECT_EQ(Run(InstallKind::kLastUpdateStage), 0);
  EXPECT_TRUE(Exists(empty + L"\\file.txt"));
}

TEST_F(InstallSequenceTest, NeitherCopiesNorRegistersBesideAnotherCopy) {
  const FakeProcessTable processes({StubbornCopy()});

  TellBothKinds();

  EXPECT_TRUE(registry_.IsEmpty());
  EXPECT_TRUE(Exists(product_.Base() + L"\\old.txt"));
}

TEST_F(InstallSequenceTest, DoesNotRegisterWhatWasNotCopied) {
  const FailingCopy copy(ERROR_DISK_FULL);

  TellBothKinds();

  EXPECT_TRUE(registry_.IsEmpty());
}

TEST_F(InstallSequenceTest, IsDoneEvenIfTheRegistrationFailed) {
  const INTERPOSER(RegSetValueExW) set_value(Answers(LSTATUS{ERROR_ACCESS_DENIED}));

  TellRun(InstallKind::kLastUpdateStage);

  EXPECT_EQ(set_value.Calls(), 12);
}

class UnelevatedInstallSequenceTest : public InstallSequenceTest {
 protected:
  UnelevatedInstallSequenceTest() : InstallSequenceTest({.elevated = false}) {}
};

TEST_F(UnelevatedInstallSequenceTest, EndsBeforeAnythingIsStopped) {
  const FakeProcessTable processes({StubbornCopy()});

  Tell("Installation", Run(InstallKind::kInstallation));
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
  int result = 0;
  {
    const ProductSurroundings surroundings(product_.Facts());
    result = Manager().FinalUpdate();
  }
  Tell(result);
}

}  // namespace
}  // namespace nhupdate_test
