// What the manager is without its start-up (manager_start_test.cpp), and its named operations,
// which pass on what they are given: what they do is tested where it is done.

#include "app/manager_center.h"

#include "tests/support/fake_log_library.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/folder_link.h"
#include "tests/support/installed_product.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/quiet_system.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/support/windows_basics.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

class ManagerLifetimeTest : public testing::Test {
 protected:
  ManagerLifetimeTest() {
    library_.on_event = [this](const std::string& event, const std::wstring&) {
      events_.push_back(event);
    };
  }

  InstalledProduct product_;
  QuietSystem system_;
  std::vector<std::string> events_;
  HRESULT com_result_ = S_OK;
  FakeLogLibrary library_;
  INTERPOSER(CoInitialize) begin_com_{[this](void* reserved) {
    EXPECT_EQ(reserved, nullptr);
    events_.push_back("CoInitialize");
    return com_result_;
  }};
  INTERPOSER(CoUninitialize) end_com_{[this] { events_.push_back("CoUninitialize"); }};
};

TEST_F(ManagerLifetimeTest, IsThatOfComAndOfNothingElseWithoutAStart) {
  {
    CManagerCenter manager;
    manager.Log(LogLevel::kError, L"dropped");
    EXPECT_FALSE(manager.IsElevated());
    EXPECT_EQ(manager.GetString(L"KEY_UPDATE_TITLE"), L"KEY_UPDATE_TITLE");
    EXPECT_THAT(events_, ElementsAre("CoInitialize"));
  }

  EXPECT_THAT(events_, ElementsAre("CoInitialize", "CoUninitialize"));
}

TEST_F(ManagerLifetimeTest, NeedsNoComAndEndsItBeforeItUnloadsTheLogLibrary) {
  com_result_ = E_OUTOFMEMORY;

  product_.Start();
  product_.DestroyManager();

  EXPECT_THAT(events_,
              ElementsAre("CoInitialize", "Load", "Resolve Start", "Resolve Stop", "Resolve Flush",
                          "Resolve WriteLog", "Start", "WriteLog", "WriteLog", "WriteLog",
                          "WriteLog", "WriteLog", "CoUninitialize", "Stop", "Free"));
}

class ManagerOperationsTest : public testing::Test {
 protected:
  ManagerOperationsTest() { CreateFolders(product_.Base()); }

  InstalledProduct product_;
  CManagerCenter& manager_ = product_.Manager();
  const QuietDesktop desktop_;
  const RecordedTools tools_;
  ScratchRegistry registry_;
};

TEST_F(ManagerOperationsTest, WriteToOneLog) {
  manager_.Log(LogLevel::kWarning, L"formatted %d", 1);
  manager_.Records().WriteText(LogLevel::kError, L"put together");

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"3|formatted 1", L"4|put together"));
}

// The numbers say whether it recurses, logs details and deletes what is there.
TEST_F(ManagerOperationsTest, CopyAFolderAsTheirNumbersSayOfWhichOnly0IsNo) {
  const std::wstring whole = L"2|Copy folder from {root}\\from to {root}\\to";
  const std::wstring deletion = L"2|Delete Dir : {root}\\to\\b";
  const std::wstring inner = L"2|Copy folder from {root}\\from\\b to {root}\\to\\b";
  const std::wstring file = L"2|Copy file from {root}\\from\\b\\new to {root}\\to\\b\\new";
  const struct {
    std::vector<int> numbers;
    std::vector<std::wstring> records;
  } cases[] = {{{-1, 2, 256}, {whole, deletion, inner, file}},
               {{1, 1, 0}, {whole, inner, file}},
               {{0, 1, 1}, {whole}},
               {{1, 0, 1}, {}}};
  WriteFileBytes(product_.Root() + L"\\from\\b\\new", "N");
  for (const auto& [numbers, records] : cases) {
    product_.ForgetRecords();
    CreateFolders(product_.Root() + L"\\to\\b");

    EXPECT_EQ(manager_.CopyFolder(product_.Root() + L"\\to", product_.Root() + L"\\from",
                                  numbers[0], numbers[1], numbers[2]),
              1);

    EXPECT_EQ(product_.Transcript(), records);
  }
}

TEST_F(ManagerOperationsTest, TakeAnyNumberBut0ForTheStagedCopy) {
  const std::wstring installed = product_.Base() + L"\\Updater\\Config\\ut.ini";
  // Seen from base\NHUpdateManager as if that were staged.
  const std::wstring mistaken = product_.Root() + L"\\Config\\ut.ini";
  WriteFileBytes(installed, "");
  for (const int argument : {1, 2, -1}) {
    WriteFileBytes(mistaken, "");

    EXPECT_EQ(manager_.DeleteUpdaterConfig(argument), 1);

    EXPECT_FALSE(Exists(mistaken)) << argument;
    EXPECT_TRUE(Exists(installed)) << argument;
  }
  EXPECT_EQ(manager_.DeleteUpdaterConfig(0), 1);
  EXPECT_FALSE(Exists(installed));
  EXPECT_EQ(manager_.DeleteUpdaterConfig(0), 0);
}

TEST_F(ManagerOperationsTest, Return1ForSuccessAnd0ForFailure) {
  const std::wstring folder = product_.Base() + L"\\Sub";
  WriteFileBytes(folder + L"\\file", "x");
  WriteFileBytes(product_.App() + L"\\Sub\\file", "x");
  {
    const HeldFile lock(folder + L"\\file");
    EXPECT_EQ(manager_.CopyFolder(product_.Base(), product_.App(), 1, 0, 0), 0);
    EXPECT_EQ(manager_.InstallCopy(), 0);
    EXPECT_THAT(desktop_.Boxes(),
                ElementsAre(ErrorBoxOf(L"KEY_FAIL_COMMON_ERROR\n" + folder + L"\\file",
                                       L"KEY_UPDATE_TITLE")));
  }
  EXPECT_EQ(manager_.InstallCopy(), 1);
  EXPECT_EQ(manager_.CollectEmptyFolders(folder), 0);
  EXPECT_EQ(manager_.CollectEmptyFolders(product_.Base() + L"\\none"), 1);
  EXPECT_EQ(manager_.DeleteFolderTree(folder), 1);
  EXPECT_EQ(manager_.DeleteFolderTree(folder), 0);
  EXPECT_EQ(manager_.RegisterProduct(), 1);
  EXPECT_FALSE(registry_.IsEmpty());
  const ProductSurroundings surroundings(product_.Facts());
  manager_.GrantFolderAccess();
  EXPECT_EQ(tools_.Started().size(), 3u);
}

TEST_F(ManagerOperationsTest, DeleteNoFolderThatLiesOutsideOfTheBaseFolder) {
  const std::wstring link = product_.Base() + L"\\Link";
  CreateFolders(product_.Root() + L"\\Elsewhere\\Sub");
  CreateLink(link, product_.Root() + L"\\Elsewhere");

  EXPECT_EQ(manager_.DeleteFolderTree(link + L"\\Sub"), 0);

  EXPECT_TRUE(Exists(link + L"\\Sub"));
  RemoveFolderLink(link);
}

TEST_F(ManagerOperationsTest, ReturnTheSameAboutProcesses) {
  {
    const FakeProcessTable nobody;
    EXPECT_EQ(manager_.StopUpdateManagers(), 1);
  }
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\a.exe"},
       {.id = 12, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true}});
  std::wstring name;
  std::wstring path;

  EXPECT_EQ(CManagerCenter::GetProcessImageName(8, name, path), 1);
  EXPECT_EQ(name + L" in " + path, L"a.exe in C:\\a.exe");
  EXPECT_EQ(CManagerCenter::GetProcessImageName(9, name, path), 0);
  EXPECT_EQ(manager_.TerminateProcessByName(L"a.exe"), 1);
  EXPECT_EQ(manager_.TerminateProcessByName(L"NHUpdateManager.exe"), 0);
  EXPECT_EQ(manager_.StopUpdateManagers(), 0);
  EXPECT_EQ(desktop_.Boxes().size(), 1u);
}

}  // namespace
}  // namespace nhupdate_test
