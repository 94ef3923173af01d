#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/held_file.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

constexpr wchar_t kConfig[] = L"\\Updater\\Config\\ut.ini";
constexpr wchar_t kOkLine[] = L"2|Updater config file delete ok : {base}\\Updater\\Config\\ut.ini";

class ConfigCleanUpTest : public WorkflowTest {
 protected:
  bool ConfigExists() { return nhupdate::Exists(product_.Base() + kConfig); }
};

TEST_F(ConfigCleanUpTest, DeletesTheConfigurationOfTheInstalledCopy) {
  AddFile(kConfig);

  const int result = Manager().DeleteUpdaterConfig(0);

  EXPECT_EQ(result, 1);
  EXPECT_FALSE(ConfigExists());
  EXPECT_EQ(product_.Transcript(), Lines({kOkLine}));
}

TEST_F(ConfigCleanUpTest, SaysThatThereIsNone) {
  const int result = Manager().DeleteUpdaterConfig(0);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"4|Updater config file note found : {base}\\Updater\\Config\\ut.ini"}));
}

TEST_F(ConfigCleanUpTest, LogsWhyALockedFileStays) {
  AddFile(kConfig);
  const HeldFile held(product_.Base() + kConfig, FILE_SHARE_READ);

  const int result = Manager().DeleteUpdaterConfig(0);

  EXPECT_EQ(result, 1);
  EXPECT_TRUE(ConfigExists());
  EXPECT_EQ(product_.Transcript(), Lines({L"4|Updater config file delete fail (32) : "
                                          L"{base}\\Updater\\Config\\ut.ini"}));
}

TEST_F(ConfigCleanUpTest, CannotDeleteAFolderOfThatName) {
  CreateFolders(product_.Base() + kConfig);

  const int result = Manager().DeleteUpdaterConfig(0);

  EXPECT_EQ(result, 1);
  EXPECT_EQ(product_.Transcript(), Lines({L"4|Updater config file delete fail (5) : "
                                          L"{base}\\Updater\\Config\\ut.ini"}));
}

TEST_F(ConfigCleanUpTest, LooksTwoFoldersAboveTheModuleForAnyOtherArgument) {
  for (const int argument : {1, 2, -1}) {
    // Seen from base\NHUpdateManager that is beside the base folder.
    WriteFileBytes(product_.Root() + L"\\Config\\ut.ini", "");
    AddFile(kConfig);
    product_.ForgetRecords();

    const int result = Manager().DeleteUpdaterConfig(argument);

    EXPECT_EQ(result, 1);
    EXPECT_TRUE(ConfigExists());
    EXPECT_EQ(product_.Transcript(),
              Lines({L"2|Updater config file delete ok : {root}\\Config\\ut.ini"}));
  }
}

class StagedConfigCleanUpTest : public WorkflowTest {
 protected:
  StagedConfigCleanUpTest() : WorkflowTest({.module = L"\\Updater\\App\\NHUpdateManager"}) {}
};

TEST_F(StagedConfigCleanUpTest, DeletesTheSameFileFromTheStagedCopy) {
  AddFile(kConfig);

  const int result = Manager().DeleteUpdaterConfig(1);

  EXPECT_EQ(result, 1);
  EXPECT_FALSE(nhupdate::Exists(product_.Base() + kConfig));
  EXPECT_EQ(product_.Transcript(), Lines({kOkLine}));
}

}  // namespace
}  // namespace nhupdate_test
