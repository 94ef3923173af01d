#include "tests/support/placeholders.h"

#include "base/strings.h"

namespace nhupdate_test {

namespace {

constexpr wchar_t kParent[] = L"-ExitWhenParentDie:";

// The texts before and after "name(id)" in the records about processes.
struct ProcessRecord {
  const wchar_t* beginning;
  const wchar_t* end;
};

constexpr ProcessRecord kProcessRecords[] = {
    {L"Skip terminate current process ", L"."},
    {L"Target process ", L" found, terminate it."},
    {L"Process ", L" still found."},
};

// The text may begin with the record's level, as in "2|".
bool IsRecord(const std::wstring& text, const wchar_t* beginning) {
  const std::size_t position = text.find(beginning);
  return position == 0 || (position == 2 && text[1] == L'|');
}

void ReplaceEnd(std::wstring& text, const std::wstring& end, const std::wstring& replacement) {
  if (text.ends_with(end)) {
    text.replace(text.size() - end.size(), end.size(), replacement);
  }
}

}  // namespace

std::wstring WithProcessNamed(std::wstring text, DWORD id, const std::wstring& name) {
  const std::wstring number = std::to_wstring(static_cast<int>(id));  // as the program's "%d"
  ReplaceEnd(text, kParent + number, kParent + name);
  for (const ProcessRecord& record : kProcessRecords) {
    if (IsRecord(text, record.beginning)) {
      ReplaceEnd(text, L"(" + number + L")" + record.end, L"(" + name + L")" + record.end);
    }
  }
  return text;
}

std::wstring WithPlaceholders(std::wstring text, const std::wstring& root,
                              const std::wstring& program_data) {
  if (!root.empty()) {
    nhupdate::ReplaceAll(text, root + L"\\Nimba Hub", L"{base}");
    nhupdate::ReplaceAll(text, root, L"{root}");
  }
  nhupdate::ReplaceAll(text, program_data, L"{data}");
  return WithProcessNamed(std::move(text), ::GetCurrentProcessId(), L"{pid}");
}

}  // namespace nhupdate_test
