// Whole runs of the program: which workflow runs, what is logged around it, when the updater's
// configuration is deleted, and how the program ends.

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "base/existence.h"
#include "tests/support/captured_console.h"
#include "tests/support/failing_copy.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/installed_product.h"
#include "tests/support/quiet_system.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/told_test.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kStagedModule[] = L"\\Updater\\App\\NHUpdateManager";
constexpr wchar_t kConfig[] = L"\\Updater\\Config\\ut.ini";

class ProgramRunTest : public ToldTest {
 protected:
  void TellRun(const std::string& heading, InstalledProduct& product,
               const std::wstring& arguments) {
    const int result = product.RunProgram(arguments);
    TellHeading(heading);
    TellLines(product.Transcript());
    TellLine(L"= " + std::to_wstring(result));
  }

  CapturedConsole console_;
  QuietSystem system_;
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;
  RecordedTools tools_;
  FakeProcessTable no_processes_;
  ScratchRegistry registry_;
};

// Without elevation, and without an updater, every workflow ends at once.
TEST_F(ProgramRunTest, IsOfTheWorkflowThatTheSwitchesAskFor) {
  for (const char* arguments :
       {"-download", "/DOWNLOAD", "-install", "-INSTALL", "-update", "/UPDATE", "-self_update",
        "/Self_Update", "-final_update", "\"-final_update\"", "-install -download",
        "-final_update -self_update", "help -update C:\\x"}) {
    InstalledProduct product({.elevated = false});
    const std::string text = arguments;
    TellRun(text, product, std::wstring(text.begin(), text.end()));
  }
}

TEST_F(ProgramRunTest, LeavesNoTraceWithoutASwitch) {
  for (const wchar_t* arguments : {L"", L"--update", L"update", L"-install:1", L"-uninstall"}) {
    InstalledProduct product;

    EXPECT_EQ(product.RunProgram(arguments), 0) << testing::PrintToString(arguments);

    EXPECT_THAT(product.LogCalls(), IsEmpty());
    EXPECT_THAT(ListTree(product.ProgramData()), IsEmpty());
    EXPECT_EQ(console_.Bytes(), "");
  }
}

TEST_F(ProgramRunTest, DeletesTheUpdatersConfigurationAfterAFailedUpdate) {
  const struct {
    const char* name;
    const wchar_t* arguments;
    std::vector<ShellAnswer> script;
    ProductOptions options = {};
    DWORD copy_error = ERROR_SUCCESS;
    bool has_updater = true;
  } cases[] = {
      {"Download", L"-download", {EndsWith(0), EndsWith(0)}},
      {"Download, nothing new", L"-download", {EndsWith(1)}},
      {"Download, failed check", L"-download", {EndsWith(99)}},
      {"Download, no updater", L"-download", {}, {}, ERROR_SUCCESS, false},
      {"Update", L"-update", {EndsWith(1), EndsWith(0), EndsWith(0)}},
      {"Update, failed", L"-update", {EndsWith(1), EndsWith(5)}},
      {"Update, not elevated", L"-update", {}, {.elevated = false}},
      // It takes itself for the installed copy wherever it runs.
      {"Update, staged", L"-update", {}, {.elevated = false, .module = kStagedModule}},
      {"SelfUpdate", L"-self_update", {EndsWith(0)}, {.module = kStagedModule}},
      {"SelfUpdate, full disk", L"-self_update", {}, {.module = kStagedModule}, ERROR_DISK_FULL},
      {"SelfUpdate, not elevated",
       L"-self_update",
       {},
       {.elevated = false, .module = kStagedModule}},
      {"FinalUpdate", L"-final_update", {}},
      {"FinalUpdate, full disk", L"-final_update", {}, {}, ERROR_DISK_FULL},
      {"FinalUpdate, not elevated", L"-final_update", {}, {.elevated = false}},
      {"Install, full disk", L"-install", {}, {}, ERROR_DISK_FULL},
      {"Install, not elevated", L"-install", {}, {.elevated = false}},
  };
  for (const auto& test_case : cases) {
    InstalledProduct product(test_case.options);
    if (test_case.has_updater) {
      WriteFileBytes(product.Base() + L"\\Updater\\Updater.exe", "not a real program");
    }
    WriteFileBytes(product.App() + L"\\new.txt", "new");
    WriteFileBytes(product.App() + L"\\NHUpdateManager\\NHUpdateManager.exe", "nor this");
    WriteFileBytes(product.Base() + kConfig, "x");
    // Where a staged copy would look if it took itself for the installed one.
    WriteFileBytes(product.App() + kConfig, "x");
    const ScriptedShell shell(test_case.script);
    std::optional<FailingCopy> copy;
    if (test_case.copy_error != ERROR_SUCCESS) {
      copy.emplace(test_case.copy_error);
    }

    TellRun(test_case.name, product, test_case.arguments);

    TellLine(std::wstring(Exists(product.Base() + kConfig) ? L"stays" : L"is deleted") + L"; " +
             (Exists(product.App() + kConfig) ? L"stays" : L"is deleted"));
  }
}

TEST_F(ProgramRunTest, KeepsItsResultWhateverBecomesOfTheConfiguration) {
  InstalledProduct product({.elevated = false});
  TellRun("None", product, L"-update");
  product.ForgetRecords();
  WriteFileBytes(product.Base() + kConfig, "x");
  const HeldFile held(product.Base() + kConfig, FILE_SHARE_READ);
  TellRun("Locked", product, L"-update");
}

// The executable's path is cut off: the folder that comes from it may be the wrong one.
TEST_F(ProgramRunTest, TouchesNothingWithoutABaseFolder) {
  constexpr std::size_t kCutOffLength = 264;
  constexpr std::size_t kProgramNameUnits = 21;  // with both backslashes
  const std::size_t base_units = InstalledProduct().Base().size();
  const std::wstring module =
      L"\\" + std::wstring(kCutOffLength - base_units - kProgramNameUnits, L'm');
  // A copy of the program that would come from nobody knows where counts as one that failed.
  const struct {
    const wchar_t* mode;
    int result;
  } cases[] = {{L"-download", 12},
               {L"-install", 0},
               {L"-update", 13},
               {L"-self_update", 16},
               {L"-final_update", 0}};
  for (const auto& [mode, result] : cases) {
    SCOPED_TRACE(testing::PrintToString(mode));
    InstalledProduct product({.module = module});
    ASSERT_GT(product.ExecutablePath().size(), 259u);
    for (const wchar_t* file :
         {L"\\old.txt", L"\\Sub\\mine.txt", L"\\Updater\\Updater.exe", L"\\Updater\\Config\\ut.ini",
          L"\\Updater\\NewUpdater\\new.dll", L"\\Updater\\Temp\\file", L"\\Updater\\App\\new.txt",
          L"\\Updater\\App\\Sub\\new.txt"}) {
      WriteFileBytes(product.Base() + file, "untouched");
    }
    CreateFolders(product.Base() + L"\\Empty");
    const std::vector<std::wstring> before = ListTree(product.Base());
    const ScriptedShell shell(AnswerByLaunch([](const RecordedLaunch& launch) {
      // The update itself fails, so that there is a configuration to be deleted.
      return EndsWith(launch.parameters.starts_with(L"NIMBAHUB") ? 5 : 0);
    }));
    int listings = 0;
    {
      const FailingCopy copy(ERROR_SUCCESS, [](const std::wstring&) { return false; });
      const INTERPOSER(DeleteFileW) delete_file([](const wchar_t*) { return FALSE; });
      const INTERPOSER(SetFileInformationByHandle) change(
          [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) { return FALSE; });
      INTERPOSER(FindFirstFileW) list([&](const wchar_t* path, WIN32_FIND_DATAW* entry) {
        listings += std::wstring(path).find(L'*') == std::wstring::npos ? 0 : 1;
        return list.Original()(path, entry);
      });

      EXPECT_EQ(product.RunProgram(mode), result);

      EXPECT_EQ(copy.Calls() + delete_file.Calls() + change.Calls(), 0);
    }
    EXPECT_EQ(listings, 0);
    EXPECT_EQ(ListTree(product.Base()), before);
    EXPECT_FALSE(product.LogCalls().empty());
  }
}

TEST_F(ProgramRunTest, EndsWithTwoStopsOfTheLogAndNothingAfterThem) {
  InstalledProduct product({.elevated = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  std::vector<std::wstring> entries;
  for (const LogCall& call : product.LogCalls()) {
    entries.push_back(call.entry);
  }
  EXPECT_EQ(entries, std::vector<std::wstring>({L"Start", L"WriteLog", L"WriteLog", L"WriteLog",
                                                L"WriteLog", L"WriteLog", L"WriteLog", L"WriteLog",
                                                L"WriteLog", L"Stop", L"Stop"}));
}

TEST_F(ProgramRunTest, UnloadsTheLogBeforeItEndsCom) {
  InstalledProduct product({.elevated = false});
  std::vector<std::string> events;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    if (details.find(L"Return") != std::wstring::npos) {
      events.clear();
    }
    events.push_back(event);
  };
  INTERPOSER(CoUninitialize) end_com([&] {
    events.push_back("CoUninitialize");
    end_com.Original()();
  });

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_THAT(events, ElementsAre("WriteLog", "Stop", "Stop", "Free", "CoUninitialize"));
}

TEST_F(ProgramRunTest, NeedsNeitherALogLibraryNorAFolderForIt) {
  const struct {
    const char* name;
    ProductOptions options;
    const char* console;
  } cases[] = {
      {"NoLibrary", {.elevated = false, .log_library = L""}, "Fail to load library : "},
      {"Incomplete",
       {.elevated = false, .log_library = L"recording_log_without_flush"},
       "Fail to load Flush from library\n"},
      {"RefusesToStart",
       {.elevated = false, .log_library = L"recording_log_start_fails"},
       "Log start fail : 7\n"},
      {"NoProgramData", {.elevated = false, .has_program_data = false}, ""},
  };
  for (const auto& [name, options, console] : cases) {
    const std::size_t said_before = console_.Bytes().size();
    InstalledProduct product(options);
    WriteFileBytes(product.Base() + kConfig, "x");

    TellRun(name, product, L"-update");

    EXPECT_TRUE(console_.Bytes().substr(said_before).starts_with(console)) << name;
    EXPECT_EQ(console_.Bytes().size() == said_before, *console == '\0') << name;
    EXPECT_FALSE(Exists(product.Base() + kConfig)) << name;
    EXPECT_EQ(ListTree(product.ProgramData()).empty(), !options.has_program_data) << name;
  }
}

}  // namespace
}  // namespace nhupdate_test
