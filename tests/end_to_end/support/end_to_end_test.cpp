#include "tests/end_to_end/support/end_to_end_test.h"

#include <utility>

#include "base/paths.h"
#include "base/strings.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/support/placeholders.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

EndToEndTest::EndToEndTest(std::size_t root_length) : hub_(root_length) {
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
  for (HubLogRecord record : ReadLog(hub_)) {
    // The header is the library's own record and names the machine that the test runs on.
    if (record.tag == kHeaderTag || (process_id != 0 && record.process_id != process_id)) {
      continue;
    }
    record.text = WithProcessNamed(std::move(record.text), record.process_id, L"{pid}");
    for (const auto& [id, name] : names_) {
      record.text = WithProcessNamed(std::move(record.text), id, L"{" + ToWide(name) + L"}");
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
    const std::wstring command_line =
        WithProcessNamed(child.command_line, run.process_id, L"{pid}");
    children += hub_.WithPlaceholders(child.path) + " in " +
                hub_.WithPlaceholders(child.working_folder) + " show " + ToUtf8(child.show_state) +
                (child.parent_id == run.process_id ? " by {pid}" : " by somebody else") + ": " +
                hub_.WithPlaceholders(command_line) + "\n";
  }
  return children;
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

std::string EndToEndTest::WithoutSharing() {
  return IsUnderWine() ? "0" : "32";
}

void EndToEndTest::ExpectErrorBox(const ProgramRun& run, const std::string& text,
                                  const std::string& caption) const {
  ASSERT_EQ(run.boxes.size(), 1U);
  ExpectErrorBox(run.boxes.front(), text, caption);
}

void EndToEndTest::ExpectErrorBoxAfterTheShells(const ProgramRun& run,
                                                const std::string& text) const {
  ASSERT_FALSE(run.boxes.empty());
  for (std::size_t index = 0; index + 1 < run.boxes.size(); ++index) {
    EXPECT_NE(run.boxes[index].caption, kTitle);
  }
  ExpectErrorBox(run.boxes.back(), text, kTitle);
}

void EndToEndTest::ExpectErrorBox(const WatchedBox& box, const std::string& text,
                                  const std::string& caption) const {
  EXPECT_EQ(box.caption, caption);
  EXPECT_EQ(hub_.WithPlaceholders(ToWide(box.text)), text);
  EXPECT_TRUE(box.has_red_icon);
}

}  // namespace nhupdate_test
