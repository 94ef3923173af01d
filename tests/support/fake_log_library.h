#pragma once

// A log library that exists only for the log centre: Windows "loads" it whatever path is asked for,
// and finds its entries, which are functions of the test. There can be one at a time.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class FakeLogLibrary {
 public:
  FakeLogLibrary() { current_ = this; }
  ~FakeLogLibrary() { current_ = nullptr; }

  // Called with "Load", "Resolve Start" and so on, "Start", "Stop", "Flush", "WriteLog" or "Free";
  // `details` are the arguments, with a "|" between them.
  std::function<void(const std::string& event, const std::wstring& details)> on_event =
      [](const std::string&, const std::wstring&) {};

  // The entry that the library lacks; none by default.
  std::string missing_entry;

  // What "Start" returns.
  int start_result = 0;

 private:
  static int Start(const char* version, const wchar_t* configuration, const wchar_t* log_folder) {
    const std::string narrow = version;
    current_->on_event("Start", std::wstring(narrow.begin(), narrow.end()) + L"|" + configuration +
                                    L"|" + log_folder);
    return current_->start_result;
  }

  static void WriteLog(int level, const wchar_t* tag, const wchar_t* message) {
    current_->on_event("WriteLog", std::to_wstring(level) + L"|" + tag + L"|" + message);
  }

  std::optional<FARPROC> Resolve(HMODULE library, const std::string& name) const {
    if (library != kLibrary) {
      return std::nullopt;
    }
    on_event("Resolve " + name, L"");
    static const std::map<std::string, FARPROC> entries = {
        {"Start", reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Start))},
        {"Stop", reinterpret_cast<FARPROC>(+[] { current_->on_event("Stop", L""); })},
        {"Flush", reinterpret_cast<FARPROC>(+[] { current_->on_event("Flush", L""); })},
        {"WriteLog", reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&WriteLog))}};
    const auto entry = entries.find(name);
    return entry == entries.end() || name == missing_entry ? nullptr : entry->second;
  }

  static inline FakeLogLibrary* current_ = nullptr;
  static inline const HMODULE kLibrary = reinterpret_cast<HMODULE>(std::uintptr_t{0x10610000});

  INTERPOSER(LoadLibraryW) load_{[this](const wchar_t* path) {
    on_event("Load", path);
    return kLibrary;
  }};
  INTERPOSER(GetProcAddress) resolve_{std::bind_front(&FakeLogLibrary::Resolve, this)};
  INTERPOSER(FreeLibrary) free_{[this](HMODULE library) -> std::optional<BOOL> {
    if (library != kLibrary) {
      return std::nullopt;
    }
    on_event("Free", L"");
    return TRUE;
  }};
};

}  // namespace nhupdate_test
