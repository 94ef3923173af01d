// The four entries of the library and what happens when it is unloaded. Nothing is thrown over the
// border: want of memory ends the process, as everywhere in the program.
//
// Any number of threads may call the entries at the same time. The library may be unloaded, started
// or stopped, as soon as no thread is in one of them and none will call one again: nothing runs in
// the background, and the unloading closes the log. It is for the caller to see to that, since a
// thread that is in an entry while the library goes away would return into nothing.

#include <cstddef>
#include <cwchar>
#include <memory>
#include <string_view>
#include <utility>

#include "base/want_of_memory.h"
#include "base/windows.h"
#include "log_library/logger.h"
#include "log_library/settings.h"
#include "log_library/start_result.h"

namespace {

// Longer texts are cut, so that a record's length always fits what Windows can write at once.
constexpr std::size_t kMaxTextUnits = std::size_t{64} * 1024 * 1024;

// Both need no construction and no destruction, so there is nothing that could be in the wrong
// order when the library is loaded or unloaded.
constinit SRWLOCK lock = SRWLOCK_INIT;
constinit nhupdate::CLogger* logger = nullptr;  // null while the log is not started

class CLockGuard {
 public:
  CLockGuard() { ::AcquireSRWLockExclusive(&lock); }
  ~CLockGuard() { ::ReleaseSRWLockExclusive(&lock); }
  CLockGuard(const CLockGuard&) = delete;
  CLockGuard& operator=(const CLockGuard&) = delete;
};

std::wstring_view View(const wchar_t* text) {
  return text == nullptr ? std::wstring_view()
                         : std::wstring_view(text, wcsnlen(text, kMaxTextUnits));
}

void CloseLog() {
  delete std::exchange(logger, nullptr);
}

}  // namespace

extern "C" {

int Start(const char* version, const wchar_t* configuration_path,
          const wchar_t* log_folder) noexcept;
void Stop() noexcept;
void Flush() noexcept;
void WriteLog(int level, const wchar_t* tag, const wchar_t* text) noexcept;
BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* reserved) noexcept;

// Starting again begins a new log; the one before is stopped, also when the new one fails.
int Start(const char* version, const wchar_t* configuration_path,
          const wchar_t* log_folder) noexcept {
  nhupdate::EndProcessWhenMemoryRunsOut();
  const CLockGuard guard;
  CloseLog();
  if (log_folder == nullptr || *log_folder == L'\0') {
    return static_cast<int>(nhupdate::StartResult::kNoFolderName);
  }
  auto started = std::make_unique<nhupdate::CLogger>();
  const nhupdate::StartResult result = started->Start(
      version == nullptr ? "" : version, nhupdate::ReadLogSettings(configuration_path), log_folder);
  if (result == nhupdate::StartResult::kStarted) {
    logger = started.release();
  }
  return static_cast<int>(result);
}

void Stop() noexcept {
  const CLockGuard guard;
  CloseLog();
}

void Flush() noexcept {
  const CLockGuard guard;
  if (logger != nullptr) {
    logger->Flush();
  }
}

void WriteLog(int level, const wchar_t* tag, const wchar_t* text) noexcept {
  const CLockGuard guard;
  if (logger != nullptr) {
    logger->Write(level, View(tag), View(text));
  }
}

BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, void* reserved) noexcept {
  // At the end of the process Windows closes everything, and the heap may be unusable. Otherwise no
  // thread is in an entry, so the lock, which would have to be waited for under the loader's, isn't
  // needed.
  const bool process_goes_on = reserved == nullptr;
  if (reason == DLL_PROCESS_DETACH && process_goes_on) {
    CloseLog();
  }
  return TRUE;
}

}  // extern "C"
