#include "tests/unit/update/nimba_cast_installation_test.h"

namespace nhupdate_test {

NimbaCastInstallationTest::NimbaCastInstallationTest() {
  AddUpdater();
  AddFile(L"\\Updater\\App\\CSUpdateManager\\CSUpdateManager.exe");
}

Lines NimbaCastInstallationTest::BeginLine() {
  return {L"2|Install NCS begin."};
}

Lines NimbaCastInstallationTest::DownloadedLines() {
  return {L"2|Launch updater success for download.", L"2|Updater exit = 0", L"2|Download success."};
}

Lines NimbaCastInstallationTest::InstalledLines() {
  return {L"2|Launch CSUpdateManager success for install.", L"2|CSUpdateManager exit = 0",
          L"2|Install success.", L"2|Install NCS end."};
}

Lines NimbaCastInstallationTest::CopyUpdaterLines() {
  const std::wstring from = L"{base}\\Updater";
  const std::wstring to = L"{root}\\NimbaCast\\Updater";
  const std::wstring manager = L"\\App\\CSUpdateManager";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Copy folder from " + from + L"\\App to " + to + L"\\App",
      L"2|Copy folder from " + from + manager + L" to " + to + manager,
      L"2|Copy file from " + from + manager + L"\\CSUpdateManager.exe to " + to + manager +
          L"\\CSUpdateManager.exe",
      L"2|Copy file from " + from + L"\\Updater.exe to " + to + L"\\Updater.exe",
  };
}

Lines NimbaCastInstallationTest::CopyManagerLines() {
  const std::wstring from = L"{root}\\NimbaCast\\Updater\\App\\CSUpdateManager";
  const std::wstring to = L"{root}\\NimbaCast\\CSUpdateManager";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Copy file from " + from + L"\\CSUpdateManager.exe to " + to + L"\\CSUpdateManager.exe"};
}

Lines NimbaCastInstallationTest::UntilDownload() {
  return Join({BeginLine(), CopyUpdaterLines(), DownloadNimbaCastLines()});
}

Lines NimbaCastInstallationTest::UntilInstall() {
  return Join({UntilDownload(), DownloadedLines(), CopyManagerLines(), InstallNimbaCastLines()});
}

}  // namespace nhupdate_test
