#include "tests/stand_ins/support/journal.h"

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_stand_in {

namespace {

std::wstring Printable(std::wstring text) {
  for (wchar_t& unit : text) {
    if (unit == L'\n') {
      unit = L'\u240A';
    } else if (unit == L'\r') {
      unit = L'\u240D';
    } else if (unit == L'\t') {
      unit = L'\u2409';
    }
  }
  return text;
}

std::wstring EnvironmentVariable(const wchar_t* name) {
  std::wstring value(kLongestPath, L'\0');
  value.resize(::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

// Alone: when several processes append at the same time under Wine, lines can get lost.
nhupdate::UniqueFile OpenAlone(const std::wstring& path) {
  constexpr int kTries = 5000;
  for (int tries = 0; tries < kTries; ++tries) {
    nhupdate::UniqueFile journal(::CreateFileW(path.c_str(), FILE_APPEND_DATA,
                                               FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                               OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD error = ::GetLastError();
    if (journal.IsValid() || error != ERROR_SHARING_VIOLATION) {
      return journal;
    }
    ::Sleep(1);
  }
  return {};
}

}  // namespace

void AppendToJournal(const wchar_t* path_variable, const std::vector<std::wstring>& fields) {
  const std::wstring path = EnvironmentVariable(path_variable);
  if (path.empty()) {
    return;
  }
  std::wstring line = std::to_wstring(::GetCurrentProcessId());
  for (const std::wstring& field : fields) {
    line += L'\t';
    line += Printable(field);
  }
  const std::string bytes = nhupdate_test::ToUtf8(line + L"\n");
  const nhupdate::UniqueFile journal = OpenAlone(path);
  DWORD written = 0;
  ::WriteFile(journal.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace nhupdate_stand_in
