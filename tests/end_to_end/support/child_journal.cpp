#include "tests/end_to_end/support/child_journal.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

std::vector<ChildStart> ReadChildJournal(const std::wstring& path) {
  if (!nhupdate::Exists(path)) {
    return {};
  }
  std::wistringstream lines(ToWide(ReadFileBytes(path)));
  std::vector<ChildStart> starts;
  std::wstring line;
  while (std::getline(lines, line)) {
    std::wistringstream text(line);
    std::vector<std::wstring> fields;
    std::wstring field;
    while (std::getline(text, field, L'\t')) {
      fields.push_back(field);
    }
    if (fields.size() != 7) {
      ADD_FAILURE() << "Not a line of the journal: " << ToUtf8(line);
      continue;
    }
    starts.push_back({static_cast<DWORD>(std::stoul(fields[0])), fields[1], fields[2], fields[3],
                      static_cast<DWORD>(std::stoul(fields[4])), fields[5], fields[6]});
  }
  return starts;
}

}  // namespace nhupdate_test
