#include "tests/support/fake_log_library.h"

#include <cstdint>

namespace nhupdate_test {

namespace {

FakeLogLibrary* current = nullptr;

const HMODULE kLibrary = reinterpret_cast<HMODULE>(std::uintptr_t{0x10610000});

int Start(const char* version, const wchar_t* configuration_path, const wchar_t* log_folder) {
  const std::string narrow = version;
  current->on_event("Start", std::wstring(narrow.begin(), narrow.end()) + L"|" +
                                 configuration_path + L"|" + log_folder);
  return current->start_result;
}

void Stop() {
  current->on_event("Stop", L"");
}

void Flush() {
  current->on_event("Flush", L"");
}

void WriteLog(int level, const wchar_t* tag, const wchar_t* message) {
  current->on_event("WriteLog", std::to_wstring(level) + L"|" + tag + L"|" + message);
}

}  // namespace

FakeLogLibrary::FakeLogLibrary()
    : on_event([](const std::string&, const std::wstring&) {}),
      load_([this](const wchar_t* path) {
        on_event("Load", path);
        return kLibrary;
      }),
      resolve_([this](HMODULE library, const char* name) -> FARPROC {
        return library == kLibrary ? reinterpret_cast<FARPROC>(Resolve(name))
                                   : resolve_.Original()(library, name);
      }),
      free_([this](HMODULE library) -> BOOL {
        if (library != kLibrary) {
          return free_.Original()(library);
        }
        on_event("Free", L"");
        return TRUE;
      }) {
  current = this;
}

FakeLogLibrary::~FakeLogLibrary() {
  current = nullptr;
}

void* FakeLogLibrary::Resolve(const std::string& name) {
  on_event("Resolve " + name, L"");
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
