#include "tests/end_to_end/support/end_to_end_test.h"

#include "base/paths.h"
#include "base/strings.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/end_to_end/support/utf8_text.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

// The first of the languages that Windows tells every process.
std::string SystemLanguage() {
  std::vector<wchar_t> names(1024);
  ULONG count = 0;
  ULONG units = static_cast<ULONG>(names.size());
  EXPECT_TRUE(::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &units));
  return ToUtf8(names.data());
}

// Ids stand only where the program puts them, so no other number is taken for one.
void ReplaceId(std::wstring& text, DWORD id, const std::wstring& placeholder) {
  const std::wstring number = std::to_wstring(id);
  for (const wchar_t* extension : {L".exe(", L".EXE("}) {
    nhupdate::ReplaceAll(text, extension + number + L")", extension + placeholder + L")");
  }
  const std::wstring parent = L"-ExitWhenParentDie:" + number;
  if (text.size() >= parent.size() && text.substr(text.size() - parent.size()) == parent) {
    nhupdate::ReplaceAll(text, parent, L"-ExitWhenParentDie:" + placeholder);
  }
}

}  // namespace

EndToEndTest::EndToEndTest() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam");
}

ProgramRun EndToEndTest::Run(const std::wstring& arguments) const {
  return RunToTheEnd({.executable = hub_.Manager(), .arguments = arguments});
}

ProgramRun EndToEndTest::RunStaged(const std::wstring& arguments) const {
  return RunToTheEnd({.executable = hub_.StagedManager(), .arguments = arguments});
}

ProgramRun EndToEndTest::RunUnelevated(const std::wstring& arguments) const {
  return RunToTheEnd({.executable = hub_.Manager(), .arguments = arguments, .is_elevated = false});
}

std::string EndToEndTest::Transcript() const {
  return Records(0);
}

std::string EndToEndTest::TranscriptOf(DWORD process_id) const {
  return Records(process_id);
}

std::string EndToEndTest::Records(DWORD process_id) const {
  std::string transcript;
  for (LogRecord record : ReadLog(hub_)) {
    // The header is the library's own record and names the machine that the test runs on.
    if (record.tag == kHeaderTag || (process_id != 0 && record.process_id != process_id)) {
      continue;
    }
    ReplaceId(record.text, record.process_id, L"{pid}");
    for (const auto& [id, name] : names_) {
      ReplaceId(record.text, id, L"{" + ToWide(name) + L"}");
    }
    transcript += hub_.WithPlaceholders(record.text) + "\n";
  }
  return transcript;
}

std::string EndToEndTest::Children(const ProgramRun& run) const {
  std::string children;
  for (const ChildStart& child : ReadChildJournal(hub_.ChildJournal())) {
    if (nhupdate::EqualsIgnoringCase(nhupdate::FileName(child.path), L"ICACLS.exe")) {
      continue;
    }
    std::wstring command_line = child.command_line;
    ReplaceId(command_line, run.process_id, L"{pid}");
    children += hub_.WithPlaceholders(child.path) + " in " +
                hub_.WithPlaceholders(child.working_folder) + " show " + ToUtf8(child.show_state) +
                (child.parent_id == run.process_id ? " by {pid}" : " by somebody else") + ": " +
                hub_.WithPlaceholders(command_line) + "\n";
  }
  return children;
}

std::string EndToEndTest::StartUp(const std::string& module) const {
  return "2|Process elevated.\n"
         "2|Steam language setting not found.\n"
         "2|Found System language setting : " +
         SystemLanguage() +
         "\n"
         "2|Load strings from " +
         module +
         "\\Config\\NHUpdateManager.Default.json\n"
         "2|Total 3 strings loaded.\n";
}

std::string EndToEndTest::UnelevatedStartUp(const std::string& module) const {
  std::string records = StartUp(module);
  return records.replace(0, std::string("2|Process elevated.").size(), "2|Process NOT elevated.");
}

std::string EndToEndTest::Launch(const std::string& folder, const std::string& program,
                                 const std::string& parameters) {
  return "2|Launch folder : " + folder + "\n" + "2|Launch path : " + folder + "\\" + program +
         "\n" + "2|Launch param : " + parameters + "\n";
}

std::string EndToEndTest::Grants() {
  std::string records;
  for (const char* folder :
       {"{base}\\Updater\\Config", "{base}\\Updater\\Temp", "{data}\\Corvane"}) {
    records += std::string("2|ShellExecute ICACLS success on ICACLS.exe, Params = \"") + folder +
               "\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e, Return Code = 33\n";
  }
  return records;
}

std::string EndToEndTest::NoOtherManager() {
  return "2|Skip terminate current process NHUpdateManager.exe({pid}).\n"
         "2|Target process NHUpdateManager.exe not found.\n";
}

std::vector<std::string> EndToEndTest::GrantParameters() const {
  std::vector<std::string> parameters;
  for (const ChildStart& child : ReadChildJournal(hub_.ChildJournal())) {
    if (nhupdate::EqualsIgnoringCase(nhupdate::FileName(child.path), L"ICACLS.exe")) {
      const std::size_t program_end = child.command_line.find(L".exe\"");
      EXPECT_NE(program_end, std::wstring::npos);
      parameters.push_back(hub_.WithPlaceholders(child.command_line.substr(program_end + 6)) +
                           " show " + ToUtf8(child.show_state));
    }
  }
  return parameters;
}

std::vector<std::string> EndToEndTest::ExpectedGrantParameters() {
  std::vector<std::string> parameters;
  for (const char* folder :
       {"{base}\\Updater\\Config", "{base}\\Updater\\Temp", "{data}\\Corvane"}) {
    parameters.push_back(std::string("\"") + folder +
                         "\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e show 0");
  }
  return parameters;
}

std::string EndToEndTest::ExpectedProductKeys() const {
  const auto text = [](const std::wstring& key, const std::wstring& name,
                       const std::wstring& data) {
    return ToUtf8(key + L"|" + name) + "|REG_SZ|" + StoredBytes(data.size()) + "|" + ToUtf8(data) +
           "\n";
  };
  SYSTEMTIME now = {};
  ::GetLocalTime(&now);
  const std::wstring today = std::to_wstring(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
  const std::wstring uninstaller = hub_.Module() + L"\\NHUninstaller\\NHUninstaller.exe";
  const std::wstring hub = L"SOFTWARE\\WOW6432Node\\CorvaneNimbaHub";
  const std::wstring dumps =
      L"SOFTWARE\\Microsoft\\Windows\\Windows Error Reporting\\LocalDumps\\NHUpdateManager.exe";
  const std::wstring uninstall =
      L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\NIMBA HUB";
  return text(L"SOFTWARE\\WOW6432Node\\CorvaneNimba\\NimbaCollectLog", L"CorvaneNimbaHub",
              hub_.Module() + L"\\NHCollectLog\\NHCollectLog.exe") +
         text(hub, L"AppPath", hub_.Root()) + text(hub, L"UpdateManager", hub_.Manager()) +
         ToUtf8(dumps) + "|DumpCount|REG_DWORD|4|2\n" +
         text(dumps, L"DumpFolder",
              hub_.DataFolder() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log") +
         ToUtf8(dumps) + "|DumpType|REG_DWORD|4|2\n" +
         text(uninstall, L"DisplayIcon", uninstaller) +
         text(uninstall, L"DisplayName", L"Nimba Hub") + text(uninstall, L"InstallDate", today) +
         text(uninstall, L"InstallLocation", hub_.Root()) +
         text(uninstall, L"Publisher", L"Corvane") +
         text(uninstall, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall");
}

std::string EndToEndTest::WithoutSharing() {
  return IsUnderWine() ? "0" : "32";
}

void ExpectErrorBox(const ProgramRun& run, const std::string& text) {
  ASSERT_EQ(run.boxes.size(), 1U);
  EXPECT_EQ(run.boxes[0].caption, kTitle);
  EXPECT_EQ(run.boxes[0].text, text);
  EXPECT_TRUE(run.boxes[0].has_red_icon);
}

void ExpectErrorBoxAfterTheShells(const ProgramRun& run, const std::string& text) {
  ASSERT_FALSE(run.boxes.empty());
  for (std::size_t index = 0; index + 1 < run.boxes.size(); ++index) {
    EXPECT_NE(run.boxes[index].caption, kTitle);
  }
  EXPECT_EQ(run.boxes.back().caption, kTitle);
  EXPECT_EQ(run.boxes.back().text, text);
}

}  // namespace nhupdate_test
