#pragma once

// A log library that exists only for the log centre: Windows "loads" it and finds its entries,
// which are functions of the test. There can be one at a time.

#include <functional>
#include <string>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class FakeLogLibrary {
 public:
  FakeLogLibrary();
  ~FakeLogLibrary();
  FakeLogLibrary(const FakeLogLibrary&) = delete;
  FakeLogLibrary& operator=(const FakeLogLibrary&) = delete;

  // Called with "Load", "Resolve Start" and so on, "Start", "Stop", "WriteLog" or "Free"; `details`
  // are the arguments, with a "|" between them.
  std::function<void(const std::string& event, const std::wstring& details)> on_event;

  // The entry that isn't there; none by default.
  std::string missing_entry;

  // What "Start" returns.
  int start_result = 0;

 private:
  void* Resolve(const std::string& name);

  INTERPOSER(LoadLibraryW) load_;
  INTERPOSER(GetProcAddress) resolve_;
  INTERPOSER(FreeLibrary) free_;
};

}  // namespace nhupdate_test
