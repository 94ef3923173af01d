// The manager's start-up as a user's machine sees it: records, console, folders.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/manager_center.h"
#include "base/paths.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/placeholders.h"
#include "tests/support/quiet_system.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Of an elevated process without texts.
std::vector<std::wstring> StartUpLines() {
  const std::wstring texts = L"{base}\\NHUpdateManager\\Config\\NHUpdateManager.Default.json";
  return {L"2|Process elevated.", L"2|Steam language setting not found.",
          L"2|Found System language setting : en-US", L"2|Load strings from " + texts,
          L"4|Fail to open string file : " + texts};
}

class ManagerStartTest : public testing::Test {
 protected:
  // The arguments of the library's "Start".
  static std::vector<std::wstring> StartArguments(const InstalledProduct& product) {
    for (const LogCall& call : product.LogCalls()) {
      if (call.entry == L"Start") {
        std::vector<std::wstring> arguments;
        for (const std::wstring& argument : call.arguments) {
          arguments.push_back(WithPlaceholders(argument, product.Root(), product.ProgramData()));
        }
        return arguments;
      }
    }
    return {};
  }

  CapturedConsole console_;
  QuietSystem system_;
};

TEST_F(ManagerStartTest, TellsWhatItFoundWithTexts) {
  InstalledProduct product;
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en-US.json",
                 R"({"KEY_UPDATE_TITLE": "Update"})");

  product.Start();

  EXPECT_THAT(product.Transcript(),
              ElementsAre(L"2|Process elevated.", L"2|Steam language setting not found.",
                          L"2|Found System language setting : en-US",
                          L"2|Load strings from "
                          L"{base}\\NHUpdateManager\\Config\\NHUpdateManager.en-US.json",
                          L"2|Total 1 strings loaded."));
  EXPECT_EQ(product.Manager().GetString(L"KEY_UPDATE_TITLE"), L"Update");
  EXPECT_EQ(console_.Bytes(), "");
}

TEST_F(ManagerStartTest, TellsWhatItMissesWithoutElevationAndTexts) {
  InstalledProduct product({.elevated = false});

  product.Start();

  EXPECT_THAT(product.Transcript(),
              ElementsAre(L"2|Process NOT elevated.", L"2|Steam language setting not found.",
                          L"2|Found System language setting : en-US",
                          L"2|Load strings from "
                          L"{base}\\NHUpdateManager\\Config\\NHUpdateManager.Default.json",
                          L"4|Fail to open string file : "
                          L"{base}\\NHUpdateManager\\Config\\NHUpdateManager.Default.json"));
  EXPECT_EQ(product.Manager().GetString(L"KEY_UPDATE_TITLE"), L"KEY_UPDATE_TITLE");
}

TEST_F(ManagerStartTest, TakesTheTextsOfTheGeneralLanguage) {
  InstalledProduct product;
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en.json", R"({"K": "general"})");
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.Default.json",
                 R"({"K": "default"})");

  product.Start();

  EXPECT_EQ(product.Manager().GetString(L"K"), L"general");
}

TEST_F(ManagerStartTest, StartsTheLogWithItsConfigurationAndFolder) {
  InstalledProduct product;

  product.Start();

  EXPECT_THAT(StartArguments(product),
              ElementsAre(L"1.0.0", L"{base}\\NHUpdateManager\\LogConfig.ini",
                          L"{data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log"));
}

TEST_F(ManagerStartTest, CreatesTheDataFolders) {
  InstalledProduct product;

  product.Start();

  EXPECT_THAT(
      ListTree(product.ProgramData()),
      ElementsAre(L"Corvane\\", L"Corvane\\NimbaSoftware\\", L"Corvane\\NimbaSoftware\\NimbaHub\\",
                  L"Corvane\\NimbaSoftware\\NimbaHub\\Log\\"));
}

TEST_F(ManagerStartTest, LeavesDataFoldersThatAreThereAlone) {
  InstalledProduct product;
  const std::wstring old_log =
      product.ProgramData() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log\\old.log";
  WriteFileBytes(old_log, "old");

  product.Start();

  EXPECT_EQ(ReadFileBytes(old_log), "old");
}

TEST_F(ManagerStartTest, CreatesNothingWithoutAProgramDataFolder) {
  InstalledProduct product({.has_program_data = false});
  INTERPOSER(CreateDirectoryW) create(
      [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL { return FALSE; });

  product.Start();

  EXPECT_EQ(create.Calls(), 0);
  EXPECT_THAT(StartArguments(product),
              ElementsAre(L"1.0.0", L"{base}\\NHUpdateManager\\LogConfig.ini", L""));
  EXPECT_EQ(product.Transcript(), StartUpLines());
}

// Every user may write to ProgramData.
TEST_F(ManagerStartTest, CreatesNothingBelowALink) {
  for (const wchar_t* link :
       {L"\\Corvane", L"\\Corvane\\NimbaSoftware", L"\\Corvane\\NimbaSoftware\\NimbaHub"}) {
    InstalledProduct product;
    const std::wstring elsewhere = product.Root() + L"\\Elsewhere";
    CreateFolders(elsewhere);
    CreateFolders(nhupdate::ParentFolder(product.ProgramData() + link));
    CreateLink(product.ProgramData() + link, elsewhere);

    product.Start();

    EXPECT_THAT(ListTree(elsewhere), IsEmpty()) << testing::PrintToString(link);
    EXPECT_THAT(StartArguments(product),
                ElementsAre(L"1.0.0", L"{base}\\NHUpdateManager\\LogConfig.ini", L""));
    EXPECT_EQ(product.Transcript(), StartUpLines());
    product.DestroyManager();
    RemoveFolderLink(product.ProgramData() + link);
  }
}

TEST_F(ManagerStartTest, GoesOnWhenNoFolderCanBeCreated) {
  InstalledProduct product;
  INTERPOSER(CreateDirectoryW) create([](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  });

  product.Start();

  EXPECT_EQ(create.Calls(), 4);
  EXPECT_THAT(StartArguments(product),
              ElementsAre(L"1.0.0", L"{base}\\NHUpdateManager\\LogConfig.ini",
                          L"{data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log"));
  EXPECT_EQ(product.Transcript(), StartUpLines());
}

TEST_F(ManagerStartTest, GoesOnWithoutALogLibrary) {
  InstalledProduct product({.log_library = L""});
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en-US.json", R"({"K": "text"})");

  product.Start();

  EXPECT_EQ(console_.Text(),
            L"Fail to load library : " + product.Module() + L"\\NSWLogDynamic64U.dll\n");
  EXPECT_THAT(product.LogCalls(), IsEmpty());
  EXPECT_TRUE(product.Manager().IsElevated());
  EXPECT_EQ(product.Manager().GetString(L"K"), L"text");
}

TEST_F(ManagerStartTest, WritesItsRecordsToALibraryThatRefusedToStart) {
  InstalledProduct product({.log_library = L"recording_log_start_fails"});

  product.Start();

  EXPECT_EQ(console_.Bytes(), "Log start fail : 7\n");
  EXPECT_EQ(product.Transcript(), StartUpLines());
}

}  // namespace
}  // namespace nhupdate_test
