#include "tests/log_library/loaded_log_library.h"

#include <cstdio>
#include <cstdlib>

#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

template <typename Entry>
void Resolve(const nhupdate::UniqueLibrary& library, const char* name, Entry& entry) {
  entry =
      reinterpret_cast<Entry>(reinterpret_cast<void (*)()>(::GetProcAddress(library.Get(), name)));
  if (entry == nullptr) {
    std::fprintf(stderr, "The log library or its %s is missing.\n", name);
    std::abort();
  }
}

}  // namespace

std::wstring LogLibraryPath() {
  return TestProgramFolder() + L"\\NSWLogDynamic64U.dll";
}

LoadedLogLibrary::LoadedLogLibrary() : library_(::LoadLibraryW(LogLibraryPath().c_str())) {
  Resolve(library_, "Start", start_);
  Resolve(library_, "Stop", stop_);
  Resolve(library_, "Flush", flush_);
  Resolve(library_, "WriteLog", write_log_);
}

}  // namespace nhupdate_test
