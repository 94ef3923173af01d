// The manager's named operations pass on what they are given and return 1 or 0. What they do is
// tested where it is done.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using nhupdate::CManagerCenter;
using nhupdate::Exists;
using nhupdate::InstallKind;
using testing::ElementsAre;
using testing::IsEmpty;

class InstallOperationsTest : public testing::Test {
 protected:
  InstallOperationsTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(product_.Base());
  }

  // With these three numbers, over a folder that both have.
  std::vector<std::wstring> RecordsOfCopy(int recurse, int log_details, int delete_existing) {
    product_.ForgetRecords();
    WriteFileBytes(product_.Root() + L"\\from\\b\\new", "N");
    CreateFolders(product_.Root() + L"\\to\\b");
    EXPECT_EQ(product_.Manager().CopyFolder(product_.Root() + L"\\to", product_.Root() + L"\\from",
                                            recurse, log_details, delete_existing),
              1);
    return product_.Transcript();
  }

  InstalledProduct product_{{.elevated = false}};
  const QuietDesktop desktop_;
  const RecordedTools tools_;
  ScratchRegistry registry_;
};

TEST_F(InstallOperationsTest, TakeAnyNumberButZeroForYes) {
  const std::wstring whole = L"2|Copy folder from {root}\\from to {root}\\to";
  const std::wstring deletion = L"2|Delete Dir : {root}\\to\\b";
  const std::wstring inner = L"2|Copy folder from {root}\\from\\b to {root}\\to\\b";
  const std::wstring file = L"2|Copy file from {root}\\from\\b\\new to {root}\\to\\b\\new";

  EXPECT_THAT(RecordsOfCopy(-1, 2, 256), ElementsAre(whole, deletion, inner, file));
  EXPECT_THAT(RecordsOfCopy(1, 1, 0), ElementsAre(whole, inner, file));
  EXPECT_THAT(RecordsOfCopy(0, 1, 1), ElementsAre(whole));
  EXPECT_THAT(RecordsOfCopy(1, 0, 1), IsEmpty());
}

TEST_F(InstallOperationsTest, ReturnOneForSuccessAndZeroForFailure) {
  CManagerCenter& manager = product_.Manager();
  const std::wstring folder = product_.Base() + L"\\Sub";
  WriteFileBytes(folder + L"\\file", "x");
  WriteFileBytes(product_.App() + L"\\Sub\\file", "x");
  {
    const HeldFile lock(folder + L"\\file");
    EXPECT_EQ(manager.CopyFolder(product_.Base(), product_.App(), 1, 0, 0), 0);
    EXPECT_EQ(manager.InstallCopy(), 0);
    EXPECT_THAT(desktop_.Boxes(), ElementsAre(CopyErrorBox(folder + L"\\file")));
  }
  EXPECT_EQ(manager.InstallCopy(), 1);
  EXPECT_EQ(manager.CollectEmptyFolders(folder), 0);
  EXPECT_EQ(manager.CollectEmptyFolders(product_.Base() + L"\\none"), 1);
  EXPECT_EQ(manager.DeleteFolderTree(folder), 1);
  EXPECT_EQ(manager.DeleteFolderTree(folder), 0);
  EXPECT_EQ(manager.RegisterProduct(), 1);
  EXPECT_FALSE(registry_.IsEmpty());
  const ProductSurroundings surroundings(product_.Facts());
  manager.GrantFolderAccess();
  EXPECT_EQ(tools_.Started().size(), 3u);
}

TEST_F(InstallOperationsTest, ReturnTheSameAboutProcesses) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\a.exe"},
       {.id = 12, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true}});
  std::wstring name;
  std::wstring path;

  EXPECT_EQ(CManagerCenter::GetProcessImageName(8, name, path), 1);
  EXPECT_EQ(name, L"a.exe");
  EXPECT_EQ(path, L"C:\\a.exe");
  EXPECT_EQ(CManagerCenter::GetProcessImageName(9, name, path), 0);
  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"a.exe"), 1);
  EXPECT_EQ(product_.Manager().TerminateProcessByName(L"NHUpdateManager.exe"), 0);
  EXPECT_EQ(product_.Manager().StopUpdateManagers(), 0);
  EXPECT_EQ(desktop_.Boxes().size(), 1u);
}

// In the order in which they were found, the deepest first, and with what came after the scan.
TEST_F(InstallOperationsTest, RemoveTheEmptyFoldersOneAfterTheOther) {
  const std::wstring base = product_.Base();
  WriteFileBytes(product_.ExecutablePath(), "x");
  CreateFolders(base + L"\\a\\b");
  CreateFolders(base + L"\\z");
  const FakeProcessTable no_processes;
  std::vector<std::wstring> deleted;
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, DWORD access, DWORD sharing,
                                   SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                   HANDLE model) {
    if ((access & DELETE) != 0) {
      if (deleted.empty()) {
        WriteFileBytes(base + L"\\z\\late", "x");
      }
      deleted.push_back(path);
    }
    return open.Original()(path, access, sharing, security, disposition, flags, model);
  });

  EXPECT_EQ(product_.Manager().InstallSequence(InstallKind::kLastUpdateStage), 0);

  EXPECT_THAT(deleted,
              ElementsAre(base + L"\\a\\b", base + L"\\a", base + L"\\z\\late", base + L"\\z"));
  EXPECT_FALSE(Exists(base + L"\\z"));
}

// An executable in a drive's root has no folder above its own, and one whose path isn't known whole
// has none either: what lies on the drive is none of the program's business.
class NoBaseFolderTest : public testing::TestWithParam<std::wstring> {
 protected:
  ~NoBaseFolderTest() override {
    // The executable's own name is looked up, and nothing else.
    EXPECT_THAT(listing_.Patterns(), testing::Each(GetParam()));
    EXPECT_EQ(delete_file_.Calls() + copy_.Calls(), 0);
  }

  nhupdate::CManagerCenter manager_;
  const QuietDesktop desktop_;
  const ProductSurroundings surroundings_{{.executable = GetParam(), .program_data = L""}};
  const FakeProcessTable no_processes_;
  const RecordedTools tools_;
  const ScratchRegistry registry_;
  const FakeListing listing_;
  INTERPOSER(CreateDirectoryW) create_{
      [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL { return FALSE; }};
  INTERPOSER(DeleteFileW) delete_file_{[](const wchar_t*) -> BOOL { return TRUE; }};
  INTERPOSER(CopyFileW) copy_{[](const wchar_t*, const wchar_t*, BOOL) -> BOOL { return TRUE; }};
};

TEST_P(NoBaseFolderTest, MeansThatAFinalUpdateNeverLooksAtTheDrivesRoot) {
  manager_.Initialize();

  EXPECT_EQ(manager_.InstallSequence(InstallKind::kLastUpdateStage), 0);
}

TEST_P(NoBaseFolderTest, MeansThatASelfUpdateNeverCopiesTheDrive) {
  manager_.Initialize();

  EXPECT_EQ(manager_.SelfUpdate(), 16);

  EXPECT_THAT(desktop_.Boxes(),
              ElementsAre(ShownBox{L"KEY_FAIL_COMMON_ERROR", L"KEY_UPDATE_TITLE", 0x40010, true}));
}

INSTANTIATE_TEST_SUITE_P(WhereverItIs, NoBaseFolderTest,
                         testing::Values(L"C:\\NHUpdateManager.exe", L""));

}  // namespace
}  // namespace nhupdate_test
