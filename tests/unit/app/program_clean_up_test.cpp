// In which place the updater's configuration is deleted, and what becomes of the result.

#include "tests/unit/app/program_clean_up_test.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;

// The run of a process that is not elevated.
Lines NotElevatedLines(const std::wstring& heading, const ProductOptions& options,
                       const std::wstring& clean_up) {
  return Join({StartUpLines(options),
               {heading, L"4|Process not been elevated for install.", clean_up, L"2|Return 10"}});
}

TEST_F(ProgramCleanUpTest, FollowsAFailureForWantOfElevationInUpdateModesOnly) {
  struct Case {
    const wchar_t* arguments;
    bool is_deleted;
  };
  for (const Case& c :
       {Case{L"-update", true}, Case{L"-final_update", true}, Case{L"-install", false}}) {
    InstalledProduct product({.elevated = false});
    WriteFileBytes(InstalledConfig(product), "x");

    EXPECT_EQ(product.RunProgram(c.arguments), 10) << testing::PrintToString(c.arguments);

    EXPECT_EQ(Exists(InstalledConfig(product)), !c.is_deleted)
        << testing::PrintToString(c.arguments);
  }
}

TEST_F(ProgramCleanUpTest, FindsTheConfigurationFromTheStagedCopy) {
  const ProductOptions options = {.elevated = false, .module = kStagedModule};
  InstalledProduct product(options);
  AddConfigs(product);

  EXPECT_EQ(product.RunProgram(L"-self_update"), 10);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_TRUE(Exists(MistakenConfig(product)));
  EXPECT_EQ(product.Transcript(),
            NotElevatedLines(L"2|Function : Self Update", options, DeletedLine()));
}

TEST_F(ProgramCleanUpTest, TakesAnUpdateForTheInstalledCopyWhereverItRuns) {
  const ProductOptions options = {.elevated = false, .module = kStagedModule};
  InstalledProduct product(options);
  AddConfigs(product);

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_FALSE(Exists(MistakenConfig(product)));
  EXPECT_EQ(product.Transcript(),
            NotElevatedLines(L"2|Function : Update", options,
                             L"2|Updater config file delete ok : "
                             L"{base}\\Updater\\App\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramCleanUpTest, LeavesTheResultWhenThereIsNoConfiguration) {
  const ProductOptions options = {.elevated = false};
  InstalledProduct product(options);

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_EQ(product.Transcript(), NotElevatedLines(L"2|Function : Update", options,
                                                   L"4|Updater config file note found : "
                                                   L"{base}\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramCleanUpTest, LeavesTheResultWhenTheConfigurationCannotBeDeleted) {
  const ProductOptions options = {.elevated = false};
  InstalledProduct product(options);
  WriteFileBytes(InstalledConfig(product), "x");
  const HeldFile held(InstalledConfig(product), FILE_SHARE_READ);

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_EQ(product.Transcript(), NotElevatedLines(L"2|Function : Update", options,
                                                   L"4|Updater config file delete fail (32) : "
                                                   L"{base}\\Updater\\Config\\ut.ini"));
}

}  // namespace
}  // namespace nhupdate_test
