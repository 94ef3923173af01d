#include "tests/end_to_end/support/expected_records.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/windows.h"
#include "tests/support/expected_records.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr char kUpdateFunction[] = "2|Function : Update\n";

// What the shell returns for a tool that it has started.
constexpr int kStarted = 33;

std::string Text(const Lines& lines) {
  std::string text;
  for (const std::wstring& line : lines) {
    text += ToUtf8(line) + "\n";
  }
  return text;
}

// The first of the languages that Windows tells every process.
std::string SystemLanguage() {
  std::vector<wchar_t> names(1024);
  ULONG count = 0;
  ULONG units = static_cast<ULONG>(names.size());
  EXPECT_TRUE(::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &units));
  return ToUtf8(names.data());
}

std::string LanguageAndTexts(const std::string& module) {
  return LanguageWithoutSteam() +
         TextsLoaded(module + "\\Config\\NHUpdateManager.Default.json", kTextCount);
}

}  // namespace

std::string SystemLanguageFound() {
  return "2|Found System language setting : " + SystemLanguage() + "\n";
}

std::string LanguageWithoutSteam() {
  return "2|Steam language setting not found.\n" + SystemLanguageFound();
}

std::string TextsLoaded(const std::string& path, int count) {
  return "2|Load strings from " + path + "\n2|Total " + std::to_string(count) +
         " strings loaded.\n";
}

std::string StartUp(const std::string& module) {
  return kElevated + LanguageAndTexts(module);
}

std::string UnelevatedStartUp(const std::string& module) {
  return "2|Process NOT elevated.\n" + LanguageAndTexts(module);
}

std::string Launch(const std::string& folder, const std::string& program,
                   const std::string& parameters) {
  return Text(LaunchLines(ToWide(folder), L"\\" + ToWide(program), ToWide(parameters)));
}

std::string LaunchHubUpdate() {
  return Text(UpdateProductLines());
}

std::string LaunchSelfUpdate() {
  return Text(StartSelfUpdateLines());
}

std::string LaunchFinalUpdate() {
  return Text(StartFinalUpdateLines());
}

std::string HubCheck() {
  return "2|Function : Check and background download\n" + Text(CheckForUpdateLines());
}

std::string HubDownload() {
  return "2|Begin background download.\n" + Text(BackgroundDownloadLines()) +
         "2|Launch updater success for baclground download.\n";
}

std::string AnotherVersionDownloaded(const std::string& staged_version) {
  return HubCheck() + R"(2|Launch updater success for check.
2|Updater exit = 1
2|No update available.
2|Version mismatch between installed (1.0.0) and app folder ()" +
         staged_version + ").\n" + HubDownload() + "2|Return 12\n";
}

std::string RefreshCheck() {
  return kUpdateFunction + ("2|Begin update updater.\n" + Text(CheckForUpdaterLines()));
}

std::string RefreshFoundNothing() {
  return kUpdateFunction + Text(FruitlessRefreshLines());
}

std::string LaunchUpdaterUpdate() {
  return Text(UpdateUpdaterLines());
}

std::string NoOtherManager() {
  return "2|Skip terminate current process NHUpdateManager.exe({pid}).\n"
         "2|Target process NHUpdateManager.exe not found.\n";
}

std::string Grants() {
  return Text(GrantedLines(kStarted));
}

std::string SelfCopied(const std::string& program) {
  return R"(2|Copy folder from {base}\Updater\App\NHUpdateManager to {base}\NHUpdateManager
2|Delete Dir : {base}\NHUpdateManager\Config
2|Copy folder from {base}\Updater\App\NHUpdateManager\Config to {base}\NHUpdateManager\Config
2|Copy file from {base}\Updater\App\NHUpdateManager\Config\NHUpdateManager.Default.json to {base}\NHUpdateManager\Config\NHUpdateManager.Default.json
2|Copy file from {base}\Updater\App\NHUpdateManager\LogConfig.ini to {base}\NHUpdateManager\LogConfig.ini
2|Copy file from {base}\Updater\App\NHUpdateManager\)" +
         program + R"( to {base}\NHUpdateManager\)" + program + R"(
2|Copy file from {base}\Updater\App\NHUpdateManager\NSWLogDynamic64U.dll to {base}\NHUpdateManager\NSWLogDynamic64U.dll
2|Copy NHUpdateManager success.
)";
}

std::string TopLevelFilesReplaced() {
  return R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy OK : {base}\Updater\App\NHHub.exe => {base}\NHHub.exe
2|Copy OK : {base}\Updater\App\Version.txt => {base}\Version.txt
)";
}

std::string ReleaseCopied() {
  return R"(2|Copy folder from {base}\Updater\App to {base}
2|Copy file from {base}\Updater\App\NHHub.exe to {base}\NHHub.exe
2|Delete Dir : {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins to {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins\Cameras to {base}\Plugins\Cameras
2|Copy file from {base}\Updater\App\Plugins\Cameras\cam.dll to {base}\Plugins\Cameras\cam.dll
2|Copy file from {base}\Updater\App\Plugins\sound.dll to {base}\Plugins\sound.dll
2|Copy file from {base}\Updater\App\Version.txt to {base}\Version.txt
2|Copy complete.
2|Copy files OK.
)";
}

std::string CopyFailedAtTheCameras() {
  return R"(2|Copy folder from {base}\Updater\App to {base}
2|Copy file from {base}\Updater\App\NHHub.exe to {base}\NHHub.exe
2|Delete Dir : {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins to {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins\Cameras to {base}\Plugins\Cameras
2|Copy file from {base}\Updater\App\Plugins\Cameras\cam.dll to {base}\Plugins\Cameras\cam.dll
4|Fail to copy file = 32
3|Copy fail, sleep 3 seconds and retry.
)";
}

std::string Registered() {
  return Text(RegisteredLines());
}

std::string TemporaryFolderRemoved() {
  return R"(2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
)";
}

std::string FinalUpdateRecords() {
  return StartUp() + "2|Function : Final Update\n" + NoOtherManager() + "2|Stop associates OK.\n" +
         Grants() + TopLevelFilesReplaced() + ReleaseCopied() + Registered() +
         TemporaryFolderRemoved() + "2|Return 0\n";
}

}  // namespace nhupdate_test
