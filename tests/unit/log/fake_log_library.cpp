#include "tests/unit/log/fake_log_library.h"

#include <cstdint>

namespace nhupdate_test {

namespace {

FakeLogLibrary* current = nullptr;

const HMODULE kLibrary = reinterpret_cast<HMODULE>(std::uintptr_t{0x10610000});

int Start(const char*, const wchar_t*, const wchar_t*) {
  current->on_event("Start");
  return 0;
}

void Stop() {
  current->on_event("Stop");
}

void Flush() {
  current->on_event("Flush");
}

void WriteLog(int, const wchar_t*, const wchar_t*) {
  current->on_event("WriteLog");
}

}  // namespace

FakeLogLibrary::FakeLogLibrary()
    : on_event([](const std::string&) {}),
      load_("LoadLibraryW",
            [this](const wchar_t*) {
              on_event("Load");
              return kLibrary;
            }),
      resolve_("GetProcAddress",
               [this](HMODULE library, const char* name) -> FARPROC {
                 return library == kLibrary ? reinterpret_cast<FARPROC>(Resolve(name))
                                            : resolve_.Original()(library, name);
               }),
      free_("FreeLibrary", [this](HMODULE library) -> BOOL {
        if (library != kLibrary) {
          return free_.Original()(library);
        }
        on_event("Free");
        return TRUE;
      }) {
  current = this;
}

FakeLogLibrary::~FakeLogLibrary() {
  current = nullptr;
}

void* FakeLogLibrary::Resolve(const std::string& name) {
  on_event("Resolve " + name);
  if (name == missing_entry) {
    return nullptr;
  }
  if (name == "Start") {
    return reinterpret_cast<void*>(&Start);
  }
  if (name == "Stop") {
    return reinterpret_cast<void*>(&Stop);
  }
  if (name == "Flush") {
    return reinterpret_cast<void*>(&Flush);
  }
  return name == "WriteLog" ? reinterpret_cast<void*>(&WriteLog) : nullptr;
}

}  // namespace nhupdate_test
