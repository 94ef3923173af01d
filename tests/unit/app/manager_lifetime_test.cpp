// What the manager does when it comes and goes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/manager_center.h"
#include "base/windows.h"
#include "tests/support/fake_log_library.h"
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

}  // namespace
}  // namespace nhupdate_test
