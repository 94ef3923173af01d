#include "tests/end_to_end/support/log_source.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/log_journal.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

std::wstring LevelNumber(const std::wstring& name) {
  return name == L"INFO" ? L"2" : name == L"WARN" ? L"3" : name == L"ERROR" ? L"4" : name;
}

std::vector<HubLogRecord> ReadLogFile(const std::wstring& path) {
  static const std::wregex line_form(
      LR"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d \[(\d+):\d+\] (\w+) +\[(\w+)\] (.*))");
  std::vector<HubLogRecord> records;
  std::wistringstream lines(ToWide(ReadFileBytes(path)));
  std::wstring line;
  while (std::getline(lines, line)) {
    std::wsmatch match;
    if (!std::regex_match(line, match, line_form)) {
      ADD_FAILURE() << "Not a line of the log: " << ToUtf8(line);
      continue;
    }
    records.push_back({static_cast<DWORD>(std::stoul(match[1].str())), match[3].str(),
                       LevelNumber(match[2].str()) + L"|" + match[4].str()});
  }
  return records;
}

}  // namespace

std::vector<HubLogRecord> ReadLog(const CInstalledHub& hub) {
  if (nhupdate::Exists(hub.LogFile())) {
    return ReadLogFile(hub.LogFile());
  }
  std::vector<HubLogRecord> records;
  for (const LogCall& call : ReadLogJournal(hub.LogJournal())) {
    for (const std::wstring& text : RecordsOf({call})) {
      records.push_back({call.process_id, call.arguments[1], text});
    }
  }
  return records;
}

bool LogHolds(const CInstalledHub& hub, const std::string& text) {
  return nhupdate::Exists(hub.LogFile()) &&
         ReadFileBytes(hub.LogFile()).find(text) != std::string::npos;
}

}  // namespace nhupdate_test
