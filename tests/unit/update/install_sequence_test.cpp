#include "tests/support/failing_copy.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/product_keys.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

// A product with one staged file, an old one installed, an empty folder, and a registry, processes
// and tools of its own.
class InstallSequenceTest : public WorkflowTest {
 protected:
  InstallSequenceTest() {
    AddFile(L"\\old.txt");
    AddFile(L"\\Updater\\App\\new.txt");
    AddFile(L"\\Updater\\Config\\ut.ini");
    AddFile(L"\\Updater\\Temp\\part.bin");
    CreateFolders(product_.Base() + L"\\Empty\\Inner");
  }

  int Run() override {
    const ProductSurroundings surroundings(product_.Facts());
    return Manager().InstallSequence(kind_);
  }

  void TellRunOf(InstallKind kind) {
    kind_ = kind;
    TellRun({});
  }

  // Both kinds by their numbers, of which one installs the sibling and the other removes empty
  // folders.
  void TellBothKinds() {
    TellRunOf(static_cast<InstallKind>(0));
    EXPECT_TRUE(Exists(product_.Base() + L"\\Empty"));
    EXPECT_TRUE(Exists(product_.Root() + L"\\NimbaCast"));
    RemoveTree(product_.Root() + L"\\NimbaCast");

    TellRunOf(static_cast<InstallKind>(1));
    EXPECT_FALSE(Exists(product_.Base() + L"\\Empty"));
    EXPECT_FALSE(Exists(product_.Root() + L"\\NimbaCast"));
  }

  InstallKind kind_ = InstallKind::kLastUpdateStage;
  RecordedTools tools_;
  FakeProcessTable no_processes_;
  ScratchRegistry registry_;
};

TEST_F(InstallSequenceTest, PutsTheProductIntoPlaceAndInstallsItsSiblingOrRemovesEmptyFolders) {
  TellBothKinds();

  EXPECT_EQ(registry_.Text(kProductKey, L"AppPath"), product_.Root());
}

// The deepest first, and with what came after the scan.
TEST_F(InstallSequenceTest, RemovesTheEmptyFoldersInTheOrderInWhichTheyWereFoundAndForgetsThem) {
  const std::wstring empty = product_.Base() + L"\\Empty";
  std::vector<std::wstring> deleted;
  {
    const INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, auto...) {
      if ((access & DELETE) != 0 && std::wstring(path).starts_with(empty)) {
        WriteFileBytes(empty + L"\\late", "x");
        deleted.push_back(path);
      }
    });
    EXPECT_EQ(Run(), 0);
  }
  EXPECT_THAT(deleted, ElementsAre(empty + L"\\Inner", empty + L"\\late", empty));

  AddFile(L"\\Empty\\file.txt");
  EXPECT_EQ(Run(), 0);
  EXPECT_TRUE(Exists(empty + L"\\file.txt"));
}

TEST_F(InstallSequenceTest, NeitherCopiesNorRegistersBesideAnotherCopy) {
  const FakeProcessTable processes(
      {{.id = 4242, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true}});

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

  TellRunOf(InstallKind::kLastUpdateStage);

  EXPECT_EQ(set_value.Calls(), 12);
}

TEST_F(InstallSequenceTest, OfAnInstallationEndsBeforeAnythingIsStoppedWithoutElevation) {
  LoseElevation();

  TellRunOf(InstallKind::kInstallation);

  EXPECT_EQ(no_processes_.Enumerations(), 0);
}

TEST_F(InstallSequenceTest, AsTheLastStageLeavesTheTestToItsCallerButGrantsNothing) {
  LoseElevation();

  TellRunOf(InstallKind::kLastUpdateStage);

  EXPECT_THAT(tools_.Started(), IsEmpty());
}

class FinalUpdateTest : public InstallSequenceTest {
 protected:
  int Run() override {
    const ProductSurroundings surroundings(product_.Facts());
    return Manager().FinalUpdate();
  }
};

TEST_F(FinalUpdateTest, IsTheLastStage) {
  TellRun({});
}

TEST_F(FinalUpdateTest, EndsBeforeAnythingIsStoppedWithoutElevation) {
  LoseElevation();

  TellRun({});

  EXPECT_EQ(no_processes_.Enumerations(), 0);
}

}  // namespace
}  // namespace nhupdate_test
