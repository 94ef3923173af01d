#pragma once

// The log library as the program sees it: a DLL with four entries, loaded and freed at run time.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

[[nodiscard]] std::wstring LogLibraryPath();

class LoadedLogLibrary {
 public:
  // Aborts the test run when the library or an entry is missing.
  LoadedLogLibrary();

  int Start(const wchar_t* settings, const wchar_t* folder) {
    return start_("1.0.0", settings, folder);
  }
  int Start(const std::wstring& settings, const std::wstring& folder) {
    return Start(settings.c_str(), folder.c_str());
  }
  int StartWithVersion(const char* version, const std::wstring& folder) {
    return start_(version, nullptr, folder.c_str());
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

// A log folder and a settings file in a scratch folder.
class LogPlace {
 public:
  // `settings` are the lines below [Log].
  explicit LogPlace(const std::string& settings = "Level=1\n");

  [[nodiscard]] std::wstring Folder() const { return scratch_.Path() + L"\\Log"; }
  [[nodiscard]] std::wstring Settings() const { return scratch_.Path() + L"\\LogConfig.ini"; }
  [[nodiscard]] std::wstring Outside(const std::wstring& name) const {
    return scratch_.Path() + L"\\" + name;
  }
  [[nodiscard]] std::wstring CurrentFile() const { return Folder() + L"\\NHUpdateManager.log"; }
  [[nodiscard]] std::wstring RotatedFile(int number) const {
    return Folder() + L"\\NHUpdateManager." + std::to_wstring(number) + L".log";
  }

 private:
  ScratchFolder scratch_;
};

// A log that has been started in a place of its own; a test failure when that fails.
struct StartedLog {
  // `settings` are the lines below [Log].
  explicit StartedLog(const std::string& settings = "Level=1\n");

  LogPlace place;
  LoadedLogLibrary library;
};

// The smallest size of a file, and a record that fills it, as it is written and as it is read.
inline constexpr char kSmallFiles[] = "MaxFileSizeKB=16\n";
inline const std::wstring kFullFile(16 * 1024, L'x');
inline const std::string kFullFileText(16 * 1024, 'x');

}  // namespace nhupdate_test
