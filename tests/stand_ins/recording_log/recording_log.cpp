// A log library that writes down every call instead of logging: one line of tab-separated UTF-8
// for each, with the id of the calling process, appended to the file that the environment variable
// NHUPDATE_LOG_JOURNAL names. It is built in several variants: the .def file decides what is
// exported, RECORDING_LOG_START_RESULT what "Start" returns.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace {

std::wstring JournalPath() {
  std::wstring path(32767, L'\0');
  path.resize(::GetEnvironmentVariableW(L"NHUPDATE_LOG_JOURNAL", path.data(),
                                        static_cast<DWORD>(path.size())));
  return path;
}

// A field must not end its line or itself.
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

void Record(const std::wstring& call) {
  const std::wstring line = std::to_wstring(::GetCurrentProcessId()) + L"\t" + call + L"\n";
  const int units = static_cast<int>(line.size());
  std::string bytes(line.size() * 3, '\0');
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, line.data(), units, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  const nhupdate::UniqueFile journal(
      ::CreateFileW(JournalPath().c_str(), FILE_APPEND_DATA,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                    FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  ::WriteFile(journal.Get(), bytes.data(), static_cast<DWORD>(size), &written, nullptr);
}

}  // namespace

extern "C" {

int Start(const char* version, const wchar_t* configuration_path, const wchar_t* log_folder);
void Stop();
void Flush();
void WriteLog(int level, const wchar_t* tag, const wchar_t* message);

int Start(const char* version, const wchar_t* configuration_path, const wchar_t* log_folder) {
  const std::string narrow = version;
  Record(L"Start\t" + std::wstring(narrow.begin(), narrow.end()) + L"\t" +
         Printable(configuration_path) + L"\t" + Printable(log_folder));
  return RECORDING_LOG_START_RESULT;
}

void Stop() {
  Record(L"Stop");
}

void Flush() {
  Record(L"Flush");
}

void WriteLog(int level, const wchar_t* tag, const wchar_t* message) {
  Record(L"WriteLog\t" + std::to_wstring(level) + L"\t" + Printable(tag) + L"\t" +
         Printable(message));
}

}  // extern "C"
