#pragma once

// The log library as the program sees it: a DLL with four entries, loaded and freed at run time.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

[[nodiscard]] std::wstring LogLibraryPath();

class LoadedLogLibrary {
 public:
  // Aborts the test run when the library or an entry is missing.
  LoadedLogLibrary();

  int Start(const wchar_t* settings, const wchar_t* folder, const char* version = "1.0.0") {
    return start_(version, settings, folder);
  }
  int Start(const std::wstring& settings, const std::wstring& folder) {
    return Start(settings.c_str(), folder.c_str());
  }
  void Stop() { stop_(); }
  void Flush() { flush_(); }
  void Write(int level, const wchar_t* tag, const wchar_t* text) { write_log_(level, tag, text); }
  void Write(const std::wstring& text) { Write(2, L"test", text.c_str()); }

  [[nodiscard]] HMODULE Module() const { return library_.Get(); }

 private:
  nhupdate::UniqueLibrary library_;
  int (*start_)(const char*, const wchar_t*, const wchar_t*) = nullptr;
  void (*stop_)() = nullptr;
  void (*flush_)() = nullptr;
  void (*write_log_)(int, const wchar_t*, const wchar_t*) = nullptr;
};

}  // namespace nhupdate_test
