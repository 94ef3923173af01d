#pragma once

// The program's end of the log library, a DLL beside the executable that does all the writing. A
// missing or incomplete library costs one line on the console and never stops the program: records
// are then dropped.

#include <string>

#include "base/recursive_lock.h"
#include "base/unique_handle.h"

namespace nhupdate {

class CNSWLogCenter {
 public:
  CNSWLogCenter() = default;
  virtual ~CNSWLogCenter();
  CNSWLogCenter(const CNSWLogCenter&) = delete;
  CNSWLogCenter& operator=(const CNSWLogCenter&) = delete;

  // Loads the library and starts it. Returns 1 when it is running, also when it was loaded
  // already, else 0. A library that refuses to start stays loaded, and records still reach it.
  [[nodiscard]] int StartLog(const std::wstring& library_path,
                             const std::wstring& configuration_path,
                             const std::wstring& log_folder);

  // Passes one record on; dropped without a word when there is no library.
  void WriteRecord(int level, const std::wstring& tag, const std::wstring& message);

  // Calls the library's "Stop". The library is stopped again when it is unloaded.
  void StopLog();

  // Stops and frees the library; without one, nothing happens.
  void UnloadLogLibrary();

 private:
  using StartEntry = int (*)(const char* version, const wchar_t* configuration_path,
                             const wchar_t* log_folder);
  using StopEntry = void (*)();
  using FlushEntry = void (*)();
  using WriteLogEntry = void (*)(int level, const wchar_t* tag, const wchar_t* message);

  // Loads library_path_ and resolves all entries; returns 1, or 0 with nothing left loaded.
  int LoadLogLibrary();

  CRecursiveLock lock_;  // held during every call into the library
  UniqueLibrary library_;
  StartEntry start_ = nullptr;
  StopEntry stop_ = nullptr;
  FlushEntry flush_ = nullptr;  // a library must have it, but nothing here needs flushing
  WriteLogEntry write_log_ = nullptr;
  std::wstring library_path_;
  std::wstring configuration_path_;
  std::wstring log_folder_;
};

}  // namespace nhupdate
