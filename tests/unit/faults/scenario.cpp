#include "tests/unit/faults/scenario.h"

#include "app/program.h"
#include "base/paths.h"
#include "base/strings.h"
#include "tests/support/current_folder.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/placeholders.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/steam_setting.h"
#include "tests/support/version_file.h"
#include "tests/unit/faults/faulty_windows.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kOtherCopy = 4242;

// As little as makes every step of every workflow do something.
void LayOut(const InstalledProduct& product, const Scenario& scenario) {
  const std::wstring base = product.Base();
  WriteFileBytes(base + L"\\Version.txt", VersionFile("1.0.0"));
  WriteFileBytes(product.App() + L"\\Version.txt", VersionFile(scenario.staged_version));
  CreateFolders(base + L"\\Empty");
  for (const wchar_t* file :
       {L"\\Data\\old.txt", L"\\NHUpdateManager\\NHUpdateManager.exe", L"\\Updater\\Updater.exe",
        L"\\Updater\\Config\\ut.ini", L"\\Updater\\NewUpdater\\new.dll",
        L"\\Updater\\App\\Data\\new.txt", L"\\Updater\\App\\CSUpdateManager\\CSUpdateManager.exe",
        L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe"}) {
    WriteFileBytes(base + file, "");
  }
  WriteFileBytes(product.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 "[Language]\r\nenglish=en_US\r\n");
  WriteFileBytes(product.Module() + L"\\Config\\NHUpdateManager.en.json",
                 R"({"KEY_UPDATE_TITLE": "Update"})");
}

ShellAnswer AnswerOf(const Scenario& scenario, const RecordedLaunch& launch) {
  if (launch.parameters.find(L"-CheckTask") != std::wstring::npos) {
    return EndsWith(scenario.check_exit_code);
  }
  return EndsWith(launch.parameters.starts_with(L"NIMBAHUB") ? scenario.update_exit_code : 0);
}

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* stream) {
  *stream << scenario.name;
}

RunReport RunWithFault(const Scenario& scenario, const Fault& fault) {
  InstalledProduct product({.module = scenario.module});
  LayOut(product, scenario);
  const ProductSurroundings surroundings(product.Facts());
  const RecordedTools tools;
  SteamSetting steam;
  if (scenario.has_steam) {
    steam.SetLanguage(L"english");
  }
  const CurrentFolder current_folder(TestProgramFolder());
  std::wstring command_line = L"NHUpdateManager.exe " + std::wstring(scenario.mode_switch);
  const INTERPOSER(GetCommandLineW) get_command_line([&] { return command_line.data(); });
  const RecordedBoxes boxes;
  const RecordedSleeps sleeps;
  const FakeProcessTable processes({{kOtherCopy, L"C:\\Elsewhere\\NHUpdateManager.exe"},
                                    {FakeProcessTable::kOwnId, L"C:\\NHUpdateManager.exe"}});
  const ScriptedShell shell(
      AnswerByLaunch([&](const RecordedLaunch& launch) { return AnswerOf(scenario, launch); }));

  CallLedger ledger(fault);
  const FaultyWindows windows(ledger);
  ledger.Begin();
  const int result = nhupdate::RunProgram();
  ledger.End();

  RunReport report;
  report.result = result;
  report.transcript = product.Transcript();
  for (const Call& call : ledger.Calls()) {
    std::wstring detail = WithPlaceholders(call.detail, product.Root(), product.ProgramData());
    nhupdate::ReplaceAll(detail, nhupdate::ParentFolder(product.Root()), L"{scratch}");
    nhupdate::ReplaceAll(detail, TestProgramFolder(), L"{programs}");
    report.calls.push_back({call.function, detail, call.occurrence});
  }
  for (const std::wstring& detail : ledger.StillOpen()) {
    report.still_open.push_back(WithPlaceholders(detail, product.Root(), product.ProgramData()));
  }
  report.closed_twice = ledger.ClosedTwice();
  report.launches = shell.Launches().size();
  report.sleeps = sleeps.Milliseconds().size();
  return report;
}

}  // namespace nhupdate_test
