// A log library that writes down every call instead of logging: one line of tab-separated UTF-8
// for each, with the id of the calling process, appended to the file that the environment variable
// NHUPDATE_LOG_JOURNAL names. It is built in several variants: the .def file decides what is
// exported, RECORDING_LOG_START_RESULT what "Start" returns.

#include <string>
#include <vector>

#include "tests/stand_ins/support/journal.h"

namespace {

// Not within the function: the guard of a variable there would cost the process a slot of its few
// for threads each time that the library is loaded.
nhupdate_stand_in::Journal g_journal(L"NHUPDATE_LOG_JOURNAL");

void Record(const std::vector<std::wstring>& fields) {
  g_journal.Append(fields);
}

}  // namespace

extern "C" {

int Start(const char* version, const wchar_t* configuration_path, const wchar_t* log_folder);
void Stop();
void Flush();
void WriteLog(int level, const wchar_t* tag, const wchar_t* message);

int Start(const char* version, const wchar_t* configuration_path, const wchar_t* log_folder) {
  const std::string narrow = version;
  Record({L"Start", std::wstring(narrow.begin(), narrow.end()), configuration_path, log_folder});
  return RECORDING_LOG_START_RESULT;
}

void Stop() {
  Record({L"Stop"});
}

void Flush() {
  Record({L"Flush"});
}

void WriteLog(int level, const wchar_t* tag, const wchar_t* message) {
  Record({L"WriteLog", std::to_wstring(level), tag, message});
}

}  // extern "C"
