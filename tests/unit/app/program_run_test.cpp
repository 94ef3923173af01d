// Whole runs of the program: which workflow runs, what is logged around it, when the updater's
// configuration is deleted, and how the program ends.

#include "tests/support/captured_console.h"
#include "tests/support/failing_copy.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/installed_product.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/quiet_system.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/told_test.h"
#include "tests/support/windows_basics.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

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
  QuietDesktop desktop_;
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

TEST_F(ProgramRunTest, DeletesTheUpdatersConfigurationAfterAFailedUpdate) {
  const ProductOptions unelevated = {.elevated = false};
  const ProductOptions staged = {.module = kStagedModule};
  const ProductOptions unelevated_staged = {.elevated = false, .module = kStagedModule};
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
      {"Update, not elevated", L"-update", {}, unelevated},
      // It takes itself for the installed copy wherever it runs.
      {"Update, staged", L"-update", {}, unelevated_staged},
      {"SelfUpdate", L"-self_update", {EndsWith(0)}, staged},
      {"SelfUpdate, full disk", L"-self_update", {}, staged, ERROR_DISK_FULL},
      {"SelfUpdate, not elevated", L"-self_update", {}, unelevated_staged},
      {"FinalUpdate", L"-final_update", {}},
      {"FinalUpdate, full disk", L"-final_update", {}, {}, ERROR_DISK_FULL},
      {"FinalUpdate, not elevated", L"-final_update", {}, unelevated},
      {"Install, full disk", L"-install", {}, {}, ERROR_DISK_FULL},
      {"Install, not elevated", L"-install", {}, unelevated},
  };
  for (const auto& c : cases) {
    InstalledProduct product(c.options);
    if (c.has_updater) {
      WriteFileBytes(product.Base() + L"\\Updater\\Updater.exe", "not a real program");
    }
    WriteFileBytes(product.App() + L"\\new.txt", "new");
    WriteFileBytes(product.App() + L"\\NHUpdateManager\\NHUpdateManager.exe", "nor this");
    WriteFileBytes(product.Base() + kConfig, "x");
    // Where a staged copy would look if it took itself for the installed one.
    WriteFileBytes(product.App() + kConfig, "x");
    const ScriptedShell shell(c.script);
    std::optional<FailingCopy> copy;
    if (c.copy_error != ERROR_SUCCESS) {
      copy.emplace(c.copy_error);
    }

    TellRun(c.name, product, c.arguments);

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

TEST_F(ProgramRunTest, EndsWithTwoStopsOfTheLogWhichIsUnloadedBeforeCom) {
  InstalledProduct product({.elevated = false});
  std::vector<std::string> events;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    events.push_back(event + (details.ends_with(L"|Return 10") ? " of the result" : ""));
  };
  INTERPOSER(CoUninitialize) end_com([&] {
    events.push_back("CoUninitialize");
    end_com.Original()();
  });

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  events.erase(events.begin(), std::ranges::find(events, "WriteLog of the result"));
  EXPECT_THAT(events,
              ElementsAre("WriteLog of the result", "Stop", "Stop", "Free", "CoUninitialize"));
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

// An executable in a drive's root has no folder above its own, and one whose path isn't known whole
// may have another one: what lies there is none of the program's business. Self-update can't know
// what to copy then, which counts as a failed copy.
TEST_F(ProgramRunTest, TouchesNothingWithoutABaseFolder) {
  constexpr std::size_t kCutOffLength = 264;
  const std::size_t missing_units = kCutOffLength - InstalledProduct().ExecutablePath().size();
  const struct {
    const char* name;
    ProductOptions options;
    std::vector<int> results;  // of the five modes
  } cases[] = {
      {"cut off",
       {.module = L"\\NHUpdateManager" + std::wstring(missing_units, L'm')},
       {12, 0, 13, 16, 0}},
      {"a drive's root", {.executable = L"C:\\NHUpdateManager.exe"}, {14, 0, 14, 16, 0}},
      {"unknown", {.executable = L""}, {14, 0, 14, 16, 0}},
  };
  for (const auto& c : cases) {
    InstalledProduct product(c.options);
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
    std::vector<int> results;
    int listings = 0;
    {
      const INTERPOSER(CreateDirectoryW) create(Answers(FALSE));
      const INTERPOSER(CopyFileW) copy(Answers(TRUE));
      const INTERPOSER(DeleteFileW) delete_file(Answers(FALSE));
      const INTERPOSER(SetFileInformationByHandle) change(Answers(FALSE));
      const INTERPOSER(FindFirstFileW) list([&](const std::wstring& path, auto* entry) {
        listings += path.find(L'*') == std::wstring::npos ? 0 : 1;
        return list.Original()(path.c_str(), entry);
      });

      for (const wchar_t* mode :
           {L"-download", L"-install", L"-update", L"-self_update", L"-final_update"}) {
        results.push_back(product.RunProgram(mode));
      }

      EXPECT_EQ(copy.Calls() + delete_file.Calls() + change.Calls() + listings, 0) << c.name;
    }
    EXPECT_EQ(results, c.results) << c.name;
    EXPECT_EQ(ListTree(product.Base()), before) << c.name;
  }
  EXPECT_EQ(desktop_.Boxes(),
            std::vector<ShownBox>(4, ErrorBoxOf(L"KEY_FAIL_COMMON_ERROR", L"KEY_UPDATE_TITLE")));
}

}  // namespace
}  // namespace nhupdate_test
