#include "tests/support/log_journal.h"

#include <sstream>

#include "base/existence.h"
#include "tests/support/files.h"
#include "text/utf8.h"

namespace nhupdate_test {

std::vector<LogCall> ReadLogJournal(const std::wstring& path) {
  if (!nhupdate::Exists(path)) {
    return {};
  }
  const std::string bytes = ReadFileBytes(path);
  std::wistringstream lines(nhupdate::Utf8ToWide(bytes.data(), static_cast<int>(bytes.size())));
  std::vector<LogCall> calls;
  std::wstring line;
  while (std::getline(lines, line)) {
    std::wistringstream fields(line);
    LogCall call;
    std::wstring field;
    std::getline(fields, field, L'\t');
    call.process_id = static_cast<DWORD>(std::stoul(field));
    std::getline(fields, call.entry, L'\t');
    while (std::getline(fields, field, L'\t')) {
      call.arguments.push_back(field);
    }
    calls.push_back(call);
  }
  return calls;
}

std::vector<std::wstring> RecordsOf(const std::vector<LogCall>& calls) {
  std::vector<std::wstring> records;
  for (const LogCall& call : calls) {
    if (call.entry == L"WriteLog") {
      const std::wstring text = call.arguments.size() > 2 ? call.arguments[2] : std::wstring();
      records.push_back(call.arguments[0] + L"|" + text);
    }
  }
  return records;
}

}  // namespace nhupdate_test
