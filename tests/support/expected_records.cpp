#include "tests/support/expected_records.h"

namespace nhupdate_test {

namespace {

Lines GrantLine(const std::wstring& folder, int return_code) {
  return {L"2|ShellExecute ICACLS success on ICACLS.exe, Params = \"" + folder +
          L"\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e, Return Code = " +
          std::to_wstring(return_code)};
}

}  // namespace

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
  return LaunchLines(L"{base}\\Updater", L"\\Updater.exe",
                     L"-NoUI -CheckTask NIMBAHUB -SkipAdditionTasks -ExitWhenParentDie:{pid}");
}

Lines BackgroundDownloadLines() {
  return LaunchLines(L"{base}\\Updater", L"\\Updater.exe",
                     L"-NoUI NIMBAHUB \"-AdditionTask:NIMBA_SOFTWARE "
                     L"com.corvane.windows.nimba_internal.new_updater\" -SkipAdditionTasks "
                     L"-DownloadOnly -KillBrothers");
}

Lines CheckForUpdaterLines() {
  return LaunchLines(L"{base}\\Updater", L"\\Updater.exe",
                     L"-NoUI -CheckTask NIMBA_SOFTWARE "
                     L"com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
                     L"-ExitWhenParentDie:{pid}");
}

Lines UpdateUpdaterLines() {
  return LaunchLines(L"{base}\\Updater", L"\\Updater.exe",
                     L"NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater "
                     L"-SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}");
}

Lines UpdateProductLines() {
  return LaunchLines(L"{base}\\Updater", L"\\Updater.exe",
                     L"NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}");
}

Lines StartSelfUpdateLines() {
  return LaunchLines(L"{base}\\Updater\\App\\NHUpdateManager", L"\\NHUpdateManager.exe",
                     L"-self_update");
}

Lines StartFinalUpdateLines() {
  return LaunchLines(L"{base}\\NHUpdateManager", L"\\NHUpdateManager.exe", L"-final_update");
}

Lines DownloadNimbaCastLines() {
  return LaunchLines(L"{root}\\NimbaCast\\Updater", L"\\Updater.exe",
                     L"-NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:{pid}");
}

Lines InstallNimbaCastLines() {
  return LaunchLines(L"{root}\\NimbaCast\\CSUpdateManager", L"\\CSUpdateManager.exe", L"-Install");
}

Lines FruitlessRefreshLines() {
  return Join({{L"2|Begin update updater."},
               CheckForUpdaterLines(),
               {L"2|Launch updater success for check.", L"2|Updater exit = 1",
                L"2|No new updater available.",
                L"2|Copy folder from {base}\\Updater\\NewUpdater to "
                L"{base}\\Updater",
                L"2|Copy complete.", L"2|Update updater complete."}});
}

Lines NothingToStopLines() {
  return {L"2|Target process NHUpdateManager.exe not found.", L"2|Stop associates OK."};
}

Lines GrantedLines(int return_code) {
  return Join({GrantLine(L"{base}\\Updater\\Config", return_code),
               GrantLine(L"{base}\\Updater\\Temp", return_code),
               GrantLine(L"{data}\\Corvane", return_code)});
}

Lines CopiedNewFileLines() {
  return {
      L"2|Copy OK : {base}\\Updater\\App\\new.txt => {base}\\new.txt",
      L"2|Copy folder from {base}\\Updater\\App to {base}",
      L"2|Copy file from {base}\\Updater\\App\\new.txt to {base}\\new.txt",
      L"2|Copy complete.",
      L"2|Copy files OK.",
  };
}

Lines RegisteredLines() {
  return {
      L"2|Nimba Hub registry set.",
      L"2|NHUpdateManager crash dump folder set to : {data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log",
      L"2|Update registry OK.",
  };
}

Lines StartUpLines(const ProductOptions& options) {
  const std::wstring texts = L"{base}" + options.module + L"\\Config\\NHUpdateManager.Default.json";
  return {options.elevated ? L"2|Process elevated." : L"2|Process NOT elevated.",
          L"2|Steam language setting not found.", L"2|Found System language setting : en-US",
          L"2|Load strings from " + texts, L"4|Fail to open string file : " + texts};
}

}  // namespace nhupdate_test
