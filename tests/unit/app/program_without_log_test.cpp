// Runs of the program without its log library, with a defective one, or without a log folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/captured_console.h"
#include "tests/support/expected_records.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/quiet_system.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::IsEmpty;
using testing::SizeIs;

// Of a process that isn't elevated.
Lines InstallationLines() {
  return Join(
      {StartUpLines({.elevated = false}),
       {L"2|Function : Install", L"4|Process not been elevated for install.", L"2|Return 10"}});
}

class ProgramWithoutLogTest : public testing::Test {
 protected:
  CapturedConsole console_;
  QuietSystem system_;
};

TEST_F(ProgramWithoutLogTest, RunsWithoutALogLibrary) {
  InstalledProduct product({.elevated = false, .log_library = L""});
  WriteFileBytes(product.Base() + L"\\Updater\\Config\\ut.ini", "x");

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_EQ(console_.Text(),
            L"Fail to load library : " + product.Module() + L"\\NSWLogDynamic64U.dll\n");
  EXPECT_THAT(product.LogCalls(), IsEmpty());
  EXPECT_FALSE(Exists(product.Base() + L"\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramWithoutLogTest, RunsWithAnIncompleteLogLibrary) {
  InstalledProduct product({.elevated = false, .log_library = L"recording_log_without_flush"});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(console_.Bytes(), "Fail to load Flush from library\n");
  ASSERT_THAT(product.LogCalls(), SizeIs(1));
  EXPECT_EQ(product.LogCalls().front().entry, L"Stop");
}

TEST_F(ProgramWithoutLogTest, WritesToALogLibraryThatRefusedToStart) {
  InstalledProduct product({.elevated = false, .log_library = L"recording_log_start_fails"});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(console_.Bytes(), "Log start fail : 7\n");
  EXPECT_EQ(product.Transcript(), InstallationLines());
}

TEST_F(ProgramWithoutLogTest, RunsWithoutAProgramDataFolder) {
  InstalledProduct product({.elevated = false, .has_program_data = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(product.Transcript(), InstallationLines());
  EXPECT_THAT(ListTree(product.ProgramData()), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
