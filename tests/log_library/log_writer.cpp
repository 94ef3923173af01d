// Writes records through the log library, as any program does that uses it:
//
//   log_writer LIBRARY SETTINGS FOLDER NAME COUNT GATE
//
// Each record is the name and a number that counts from 0. The process begins to write when the
// event that GATE names is set. Ends with the code that "Start" returned, or -1 when it didn't come
// so far.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

// This needs <windows.h> first.
#include <shellapi.h>

namespace {

constexpr wchar_t kFiller[] = L" .............................................................";

template <typename Entry>
Entry Resolve(const nhupdate::UniqueLibrary& library, const char* name) {
  return reinterpret_cast<Entry>(
      reinterpret_cast<void (*)()>(::GetProcAddress(library.Get(), name)));
}

}  // namespace

int main() {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (count != 7) {
    return -1;
  }
  const nhupdate::UniqueLibrary library(::LoadLibraryW(arguments[1]));
  const auto start =
      Resolve<int (*)(const char*, const wchar_t*, const wchar_t*)>(library, "Start");
  const auto write = Resolve<void (*)(int, const wchar_t*, const wchar_t*)>(library, "WriteLog");
  const auto stop = Resolve<void (*)()>(library, "Stop");
  const nhupdate::UniqueKernelHandle gate(::OpenEventW(SYNCHRONIZE, FALSE, arguments[6]));
  if (start == nullptr || write == nullptr || stop == nullptr ||
      ::WaitForSingleObject(gate.Get(), INFINITE) != WAIT_OBJECT_0) {
    return -1;
  }

  const int result = start("1.0.0", arguments[2], arguments[3]);
  const std::wstring name = arguments[4];
  const int records = std::stoi(arguments[5]);
  for (int number = 0; number < records; ++number) {
    write(2, name.c_str(), (name + L" " + std::to_wstring(number) + kFiller).c_str());
  }
  stop();
  return result;
}
