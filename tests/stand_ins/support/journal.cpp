#include "tests/stand_ins/support/journal.h"

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

// Without the right to write elsewhere than at the end, which is where each write then goes. A lock
// needs that to read.
nhupdate::UniqueFile OpenForAppending(const std::wstring& path) {
  return nhupdate::UniqueFile(::CreateFileW(path.c_str(), FILE_APPEND_DATA | FILE_READ_DATA,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                            nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// One writer at a time: when several append at once under Wine, lines can get lost. What is locked
// is a byte that no journal has, so that nobody is kept from reading.
class Turn {
 public:
  explicit Turn(HANDLE file) : file_(file) {
    ::LockFileEx(file_, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &byte_);
  }
  ~Turn() { ::UnlockFileEx(file_, 0, 1, 0, &byte_); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  static OVERLAPPED FarByte() {
    OVERLAPPED place = {};
    place.OffsetHigh = 0x7FFFFFFF;
    return place;
  }

  HANDLE file_;
  OVERLAPPED byte_ = FarByte();
};

}  // namespace

Journal::Journal(const wchar_t* path_variable) : path_(EnvironmentVariable(path_variable)) {}

void Journal::Append(const std::vector<std::wstring>& fields) {
  if (path_.empty()) {
    return;
  }
  if (!file_.IsValid()) {
    file_ = OpenForAppending(path_);
  }
  std::wstring line = std::to_wstring(::GetCurrentProcessId());
  for (const std::wstring& field : fields) {
    line += L'\t';
    line += Printable(field);
  }
  const std::string bytes = nhupdate_test::ToUtf8(line + L"\n");
  const Turn turn(file_.Get());
  DWORD written = 0;
  ::WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace nhupdate_stand_in
