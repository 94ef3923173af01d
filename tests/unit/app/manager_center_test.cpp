// What the manager is without its start-up (manager_start_test.cpp) and its workflows.

#include "app/manager_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/quiet_system.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nhupdate::CManagerCenter;
using nhupdate::LogLevel;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(ManagerLifetimeTest, InitialisesComAndNothingElse) {
  const CManagerCenter manager;

  EXPECT_THAT(events_, ElementsAre("CoInitialize"));
  EXPECT_FALSE(manager.IsElevated());
  EXPECT_EQ(manager.GetString(L"KEY_UPDATE_TITLE"), L"KEY_UPDATE_TITLE");
}

TEST_F(ManagerLifetimeTest, EndsComWithoutAStart) {
  {
    const CManagerCenter manager;
    events_.clear();
  }

  EXPECT_THAT(events_, ElementsAre("CoUninitialize"));
}

TEST_F(ManagerLifetimeTest, EndsComBeforeItUnloadsTheLogLibrary) {
  product_.Start();
  events_.clear();

  product_.DestroyManager();

  EXPECT_THAT(events_, ElementsAre("CoUninitialize", "Stop", "Free"));
}

TEST_F(ManagerLifetimeTest, StartsAllTheSameWithoutCom) {
  com_result_ = E_OUTOFMEMORY;

  product_.Start();
  product_.DestroyManager();

  EXPECT_THAT(events_,
              ElementsAre("CoInitialize", "Load", "Resolve Start", "Resolve Stop", "Resolve Flush",
                          "Resolve WriteLog", "Start", "WriteLog", "WriteLog", "WriteLog",
                          "WriteLog", "WriteLog", "CoUninitialize", "Stop", "Free"));
}

TEST_F(ManagerLifetimeTest, DropsRecordsBeforeTheStart) {
  CManagerCenter manager;
  events_.clear();

  manager.Log(LogLevel::kError, L"%d", 1);

  EXPECT_THAT(events_, IsEmpty());
}

class ManagerLogTest : public testing::Test {
 protected:
  InstalledProduct product_;
  CManagerCenter& manager_ = product_.Manager();
};

TEST_F(ManagerLogTest, TagsEveryRecordWithTheProgramsName) {
  manager_.Log(LogLevel::kInformation, L"formatted %d", 1);
  manager_.Records().WriteText(LogLevel::kError, L"put together");

  const std::vector<LogCall> calls = product_.LogCalls();
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_THAT(calls[0].arguments, ElementsAre(L"2", L"NHUpdateManager", L"formatted 1"));
  EXPECT_THAT(calls[1].arguments, ElementsAre(L"4", L"NHUpdateManager", L"put together"));
}

TEST_F(ManagerLogTest, PassesTheLevelOnAsANumber) {
  manager_.Log(LogLevel::kInformation, L"information");
  manager_.Log(LogLevel::kWarning, L"warning");
  manager_.Log(LogLevel::kError, L"error");

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|information", L"3|warning", L"4|error"));
}

TEST_F(ManagerLogTest, TakesNoPlaceholderFromATextThatIsKnownOnlyNow) {
  const std::wstring path = L"C:\\100%s\\%d";

  manager_.Log(LogLevel::kInformation, L"Launch path : %s", path);
  manager_.Records().WriteText(LogLevel::kInformation, L"Launch path : " + path);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Launch path : C:\\100%s\\%d", L"2|Launch path : C:\\100%s\\%d"));
}

TEST_F(ManagerLogTest, ShowsErrorNumbersSigned) {
  manager_.Log(LogLevel::kInformation, L"Updater exit = %d", DWORD{0xC0000005});

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Updater exit = -1073741819"));
}

TEST_F(ManagerLogTest, WritesALongRecordWhole) {
  const std::wstring list(100000, L'\u00FC');

  manager_.Log(LogLevel::kInformation, L"<%s>", list);

  EXPECT_TRUE(product_.Transcript().back() == L"2|<" + list + L">");
}

TEST_F(ManagerLogTest, AddsNothingToATextAndTakesNothingAway) {
  manager_.Records().WriteText(LogLevel::kInformation, L"");
  manager_.Records().WriteText(LogLevel::kInformation, L" \tx\r\n");

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|", L"2| \u2409x\u240D\u240A"));
}

class ManagerOperationsTest : public testing::Test {
 protected:
  InstalledProduct product_;
  CManagerCenter& manager_ = product_.Manager();
};

// The named operations take numbers, of which only 0 is no.
TEST_F(ManagerOperationsTest, CopyFoldersAsTheirNumbersSay) {
  const std::wstring source = product_.Base() + L"\\Source";
  const std::wstring target = product_.Base() + L"\\Target";
  WriteFileBytes(source + L"\\file", "");
  WriteFileBytes(source + L"\\Sub\\new", "");
  WriteFileBytes(target + L"\\Sub\\old", "");

  EXPECT_EQ(manager_.CopyFolder(target, source, 0, 0, 0), 1);
  EXPECT_THAT(ListTree(target), ElementsAre(L"Sub\\", L"Sub\\old", L"file"));
  EXPECT_THAT(product_.Transcript(), IsEmpty());

  EXPECT_EQ(manager_.CopyFolder(target, source, 2, 0, 0), 1);
  EXPECT_THAT(ListTree(target), ElementsAre(L"Sub\\", L"Sub\\new", L"Sub\\old", L"file"));
  EXPECT_THAT(product_.Transcript(), IsEmpty());

  EXPECT_EQ(manager_.CopyFolder(target, source, 0, -1, 2), 1);
  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {base}\\Source to {base}\\Target",
                          L"2|Copy file from {base}\\Source\\file to {base}\\Target\\file"));

  EXPECT_EQ(manager_.CopyFolder(target, source, -1, 0, 2), 1);
  EXPECT_THAT(ListTree(target), ElementsAre(L"Sub\\", L"Sub\\new", L"file"));
}

TEST_F(ManagerOperationsTest, TakeAnyNumberButZeroForTheStagedCopy) {
  const std::wstring installed = product_.Base() + L"\\Updater\\Config\\ut.ini";
  // Seen from base\NHUpdateManager as if that were staged.
  const std::wstring mistaken = product_.Root() + L"\\Config\\ut.ini";
  WriteFileBytes(installed, "");
  for (const int argument : {1, 2, -1}) {
    WriteFileBytes(mistaken, "");

    EXPECT_EQ(manager_.DeleteUpdaterConfig(argument), 1);

    EXPECT_FALSE(nhupdate::Exists(mistaken)) << argument;
    EXPECT_TRUE(nhupdate::Exists(installed)) << argument;
  }
  EXPECT_EQ(manager_.DeleteUpdaterConfig(0), 1);
  EXPECT_FALSE(nhupdate::Exists(installed));
  EXPECT_EQ(manager_.DeleteUpdaterConfig(0), 0);
}

}  // namespace
}  // namespace nhupdate_test
