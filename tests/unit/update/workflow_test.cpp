#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

Lines Join(std::initializer_list<Lines> parts) {
  Lines joined;
  for (const Lines& part : parts) {
    joined.insert(joined.end(), part.begin(), part.end());
  }
  return joined;
}

Lines LaunchLines(const std::wstring& folder, const std::wstring& executable,
                  const std::wstring& parameters) {
  return {L"2|Launch folder : " + folder, L"2|Launch path : " + folder + executable,
          L"2|Launch param : " + parameters};
}

Lines CheckForUpdateLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater", L"\\Updater.exe",
                     L"-NoUI -CheckTask NIMBAHUB -SkipAdditionTasks -ExitWhenParentDie:{pid}");
}

Lines BackgroundDownloadLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater", L"\\Updater.exe",
                     L"-NoUI NIMBAHUB \"-AdditionTask:NIMBA_SOFTWARE "
                     L"com.corvane.windows.nimba_internal.new_updater\" -SkipAdditionTasks "
                     L"-DownloadOnly -KillBrothers");
}

Lines CheckForUpdaterLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater", L"\\Updater.exe",
                     L"-NoUI -CheckTask NIMBA_SOFTWARE "
                     L"com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
                     L"-ExitWhenParentDie:{pid}");
}

Lines UpdateUpdaterLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater", L"\\Updater.exe",
                     L"NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater "
                     L"-SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}");
}

Lines UpdateProductLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater", L"\\Updater.exe",
                     L"NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}");
}

Lines StartSelfUpdateLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\Updater\\App\\NHUpdateManager", L"\\NHUpdateManager.exe",
                     L"-self_update");
}

Lines DownloadNimbaCastLines() {
  return LaunchLines(L"{root}\\NimbaCast\\Updater", L"\\Updater.exe",
                     L"-NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:{pid}");
}

Lines InstallNimbaCastLines() {
  return LaunchLines(L"{root}\\NimbaCast\\CSUpdateManager", L"\\CSUpdateManager.exe", L"-Install");
}

ShownBox ErrorBoxOf(const std::wstring& text) {
  return {.text = text, .caption = L"Update", .style = 0x40010, .is_owned_by_desktop = true};
}

WorkflowTest::WorkflowTest(const ProductOptions& options) : product_(options) {
  WriteFileBytes(product_.Module() + L"\\Config\\NHUpdateManager.Default.json",
                 R"({"KEY_UPDATE_TITLE": "Update",
                     "KEY_FAIL_COMMON_ERROR": "The update failed.",
                     "KEY_FAIL_NEED_STOP_NHUPDATEMANAGER": "Close the update manager."})");
  product_.Start();
  product_.ForgetRecords();
}

}  // namespace nhupdate_test
