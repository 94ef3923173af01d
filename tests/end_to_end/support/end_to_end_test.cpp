#include "tests/end_to_end/support/end_to_end_test.h"

#include <algorithm>
#include <array>

#include "base/existence.h"
#include "base/paths.h"
#include "base/strings.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/support/golden.h"
#include "tests/support/placeholders.h"
#include "tests/support/utf8_text.h"
#include "tests/support/wine.h"

namespace nhupdate_test {

namespace {

// The first of the languages that Windows tells every process.
std::wstring SystemLanguage() {
  std::array<wchar_t, 1024> names = {};
  ULONG count = 0;
  ULONG units = static_cast<ULONG>(names.size());
  EXPECT_TRUE(::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &units));
  return names.data();
}

void ReplaceEnd(std::wstring& record, const std::wstring& beginning, const std::wstring& end,
                const std::wstring& name) {
  if (record.starts_with(beginning) && record.ends_with(end)) {
    record.replace(record.size() - end.size(), end.size(), name);
  }
}

bool IsGrant(const ChildStart& child) {
  return nhupdate::EqualsIgnoringCase(nhupdate::FileName(child.path), L"ICACLS.exe");
}

// The installed program's own path when it was started by another form of that; else the path.
std::wstring NameOnDisk(const std::wstring& path, const std::wstring& installed) {
  std::array<wchar_t, 1024> name = {};
  const DWORD units =
      ::GetLongPathNameW(path.c_str(), name.data(), static_cast<DWORD>(name.size()));
  const std::wstring long_name = units > 0 && units < name.size() ? name.data() : path;
  // This one also knows the letter case outside ASCII.
  return ::CompareStringOrdinal(long_name.c_str(), -1, installed.c_str(), -1, TRUE) == CSTR_EQUAL
             ? installed
             : path;
}

std::wstring SystemFolder() {
  std::array<wchar_t, MAX_PATH> folder = {};
  ::GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
  return folder.data();
}

// What was launched, where, and how. Wine and Windows write the path of the system's tool in
// letters of different case.
std::wstring Launched(const ChildStart& child, DWORD parent_id) {
  const std::wstring system_folder = SystemFolder();
  const auto is_system_folder = [&](const std::wstring& folder) {
    return nhupdate::EqualsIgnoringCase(folder, system_folder);
  };
  const bool is_tool = IsGrant(child) && is_system_folder(nhupdate::ParentFolder(child.path));
  const std::wstring what =
      (is_tool ? L"{system}\\ICACLS.exe" : child.path) + std::wstring(L" in ") +
      (is_system_folder(child.working_folder) ? L"{system}" : child.working_folder);
  const std::wstring arguments =
      is_tool ? child.command_line.substr(child.command_line.find(L".exe\"") + 6)
              : WithProcessNamed(child.command_line, parent_id, L"{pid}");
  return what + L", show " + child.show_state + L": " + arguments;
}

// Takes the items of one process out of the list, in their order.
template <typename Item, typename IsOfProcess>
std::vector<Item> TakeFrom(std::vector<Item>& items, IsOfProcess is_of_process) {
  const auto rest = std::stable_partition(items.begin(), items.end(),
                                          [&](const Item& item) { return !is_of_process(item); });
  std::vector<Item> taken(rest, items.end());
  items.erase(rest, items.end());
  return taken;
}

template <typename Item>
std::vector<Item> Behind(std::vector<Item> items, std::size_t count) {
  items.erase(items.begin(),
              items.begin() + static_cast<std::ptrdiff_t>(std::min(count, items.size())));
  return items;
}

}  // namespace

EndToEndTest::EndToEndTest(std::size_t root_length) : hub_(root_length) {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam");
}

ProgramRun EndToEndTest::RunAs(const ProgramStart& start) {
  files_ = Files();
  record_count_ = ReadLog(hub_).size();
  child_count_ = ReadChildJournal(hub_.ChildJournal()).size();
  ProgramRun run = RunToTheEnd(start);
  // A program that runs under another name is not among the managers yet.
  if (run.managers.empty() || run.managers.front().id != run.process_id) {
    run.managers.insert(run.managers.begin(), {run.process_id, start.executable, run.exit_code});
  }
  return run;
}

Tree EndToEndTest::Files() const {
  Tree files = ReadTree(hub_.Scratch());
  const std::wstring data_folder = hub_.DataFolder() + L"\\Corvane";
  files.merge(ReadTree(data_folder));
  if (nhupdate::Exists(data_folder)) {
    files[data_folder + L"\\"] = "";
  }
  files.erase(hub_.ChildJournal());
  files.erase(hub_.LogJournal());
  return files;
}

void EndToEndTest::ExpectGoldenRun(DWORD exit_code, const ProgramRun& run,
                                   const std::string& part) {
  EXPECT_EQ(run.exit_code, exit_code);
  ExpectGolden(Describe(run), part);
}

std::string EndToEndTest::Describe(const ProgramRun& run) {
  records_ = Behind(ReadLog(hub_), record_count_);
  children_ = Behind(ReadChildJournal(hub_.ChildJournal()), child_count_);
  has_launch_failed_ = false;
  std::string text;
  for (const ManagerProcess& process : run.managers) {
    const std::string described = DescribeProcess(process);
    // One that ended before its path could be learnt, and did nothing that the program does.
    const bool is_another = process.path.empty() && described.find('\n') == described.size() - 1;
    text += is_another ? "" : described;
  }
  EXPECT_TRUE(records_.empty() && children_.empty()) << "Somebody else has been at work too.";
  if (!run.output.empty()) {
    text += "console: " + run.output;
  }
  text += DescribeBoxes(run) + DescribeChanges(files_, Files()) + DescribeProductKeys();
  return hub_.WithPlaceholders(ToWide(text));
}

std::string EndToEndTest::DescribeProcess(const ManagerProcess& process) {
  std::string text = ToUtf8(NameOnDisk(process.path, hub_.Manager())) + " ends with " +
                     std::to_string(process.exit_code) + "\n";
  for (const HubLogRecord& record :
       TakeFrom(records_, [&](const HubLogRecord& any) { return any.process_id == process.id; })) {
    // The header is the library's own record and names the machine that the test runs on.
    if (record.tag != kHeaderTag) {
      text += "  " + ToUtf8(Neutral(record.text, process.id)) + "\n";
    }
  }
  std::vector<ChildStart> children =
      TakeFrom(children_, [&](const ChildStart& child) { return child.parent_id == process.id; });
  // The grants run at the same time and may come in any order, so they are sorted.
  const auto grants = std::stable_partition(
      children.begin(), children.end(), [](const ChildStart& child) { return !IsGrant(child); });
  std::sort(grants, children.end(), [](const ChildStart& left, const ChildStart& right) {
    return left.command_line < right.command_line;
  });
  for (const ChildStart& child : children) {
    text += "  started " + ToUtf8(Launched(child, process.id)) + "\n";
  }
  return text;
}

std::string EndToEndTest::DescribeBoxes(const ProgramRun& run) const {
  std::string text;
  for (const WatchedBox& box : run.boxes) {
    // Wine's shell shows a box of its own about a program that can't be started.
    if (has_launch_failed_ && box.caption != kTitle) {
      continue;
    }
    text += (box.has_red_icon ? "error box \"" : "box \"") + box.caption + "\": " + box.text + "\n";
  }
  return text;
}

std::wstring EndToEndTest::Neutral(std::wstring record, DWORD process_id) {
  record = WithProcessNamed(std::move(record), process_id, L"{pid}");
  for (const auto& [id, name] : names_) {
    record = WithProcessNamed(std::move(record), id, L"{" + name + L"}");
  }
  ReplaceEnd(record, L"2|Found System language setting : ", SystemLanguage(), L"{language}");
  // The error of a launch whose executable another process holds without sharing. Under Wine it is
  // lost while the shell shows its box: it becomes 0, or 5 if the box loses the focus, which is why
  // each lane has a display of its own (tools/lib/wine.sh).
  const std::wstring record_before = record;
  ReplaceEnd(record, L"4|Fail to launch ", IsWine() ? L": 0" : L": 32", L": {held}");
  has_launch_failed_ = has_launch_failed_ || record != record_before;
  return record;
}

}  // namespace nhupdate_test
