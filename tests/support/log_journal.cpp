#include "tests/support/log_journal.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/existence.h"
#include "tests/support/files.h"
#include "text/utf8.h"

namespace nhupdate_test {

namespace {

std::vector<std::wstring> FieldsOf(const std::wstring& line) {
  std::vector<std::wstring> fields;
  std::wistringstream stream(line + L'\t');
  for (std::wstring field; std::getline(stream, field, L'\t');) {
    fields.push_back(field);
  }
  return fields;
}

// The process id, the entry and its arguments.
std::size_t FieldCountOf(const std::wstring& entry) {
  return entry == L"Start" || entry == L"WriteLog" ? 5 : 2;
}

}  // namespace

std::vector<LogCall> ReadLogJournal(const std::wstring& path) {
  if (!nhupdate::Exists(path)) {
    return {};
  }
  const std::string bytes = ReadFileBytes(path);
  std::wistringstream lines(nhupdate::Utf8ToWide(bytes.data(), static_cast<int>(bytes.size())));
  std::vector<LogCall> calls;
  for (std::wstring line; std::getline(lines, line);) {
    const std::vector<std::wstring> fields = FieldsOf(line);
    if (fields.size() < 2 || fields.size() != FieldCountOf(fields[1])) {
      ADD_FAILURE() << "Not a line of the log library's journal: " << testing::PrintToString(line);
      continue;
    }
    calls.push_back(
        {static_cast<DWORD>(std::stoul(fields[0])), fields[1], {fields.begin() + 2, fields.end()}});
  }
  return calls;
}

std::wstring DescribeCall(const LogCall& call) {
  std::wstring text = call.entry;
  for (const std::wstring& argument : call.arguments) {
    text += L"|" + argument;
  }
  return text;
}

std::vector<std::wstring> RecordsOf(const std::vector<LogCall>& calls) {
  std::vector<std::wstring> records;
  for (const LogCall& call : calls) {
    if (call.entry == L"WriteLog") {
      records.push_back(call.arguments.at(0) + L"|" + call.arguments.at(2));
    }
  }
  return records;
}

}  // namespace nhupdate_test
