#include "log/log_center.h"

#include <mutex>

#include "base/console.h"
#include "base/windows.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

constexpr char kInterfaceVersion[] = "1.0.0";

template <typename Entry>
bool Resolve(const UniqueLibrary& library, const char* name, Entry& entry) {
  // By way of the most general function type: compilers warn of a direct cast between two others.
  entry =
      reinterpret_cast<Entry>(reinterpret_cast<void (*)()>(::GetProcAddress(library.Get(), name)));
  return entry != nullptr;
}

}  // namespace

CNSWLogCenter::~CNSWLogCenter() {
  UnloadLogLibrary();
}

int CNSWLogCenter::StartLog(const std::wstring& library_path,
                            const std::wstring& configuration_path,
                            const std::wstring& log_folder) {
  {
    const std::lock_guard guard(lock_);
    if (library_.IsValid()) {
      return 1;
    }
  }
  library_path_ = library_path;
  configuration_path_ = configuration_path;
  log_folder_ = log_folder;
  if (LoadLogLibrary() == 0) {
    return 0;
  }

  int result = 0;
  {
    const std::lock_guard guard(lock_);
    result = start_(kInterfaceVersion, configuration_path_.c_str(), log_folder_.c_str());
  }
  if (result != 0) {
    PrintConsoleError(L"Log start fail : %d\n", result);
    return 0;
  }
  return 1;
}

void CNSWLogCenter::WriteRecord(int level, const std::wstring& tag, const std::wstring& message) {
  const std::lock_guard guard(lock_);
  if (write_log_ != nullptr) {
    write_log_(level, tag.c_str(), message.c_str());
  }
}

void CNSWLogCenter::StopLog() {
  const std::lock_guard guard(lock_);
  if (stop_ != nullptr) {
    stop_();
  }
}

void CNSWLogCenter::UnloadLogLibrary() {
  const std::lock_guard guard(lock_);
  StopLog();
  if (library_.IsValid()) {
    library_.Reset();
    start_ = nullptr;
    stop_ = nullptr;
    flush_ = nullptr;
    write_log_ = nullptr;
  }
}

int CNSWLogCenter::LoadLogLibrary() {
  bool complete = false;
  {
    const std::lock_guard guard(lock_);
    library_.Reset(::LoadLibraryW(PathForWindows(library_path_).c_str()));
    if (!library_.IsValid()) {
      PrintConsoleError(L"Fail to load library : %s\n", library_path_);
    } else if (!Resolve(library_, "Start", start_)) {
      PrintConsoleError(L"Fail to load Start from library\n");
    } else if (!Resolve(library_, "Stop", stop_)) {
      PrintConsoleError(L"Fail to load Stop from library\n");
    } else if (!Resolve(library_, "Flush", flush_)) {
      PrintConsoleError(L"Fail to load Flush from library\n");
    } else if (!Resolve(library_, "WriteLog", write_log_)) {
      PrintConsoleError(L"Fail to load WriteLog from library\n");
    } else {
      complete = true;
    }
  }
  if (!complete) {
    UnloadLogLibrary();
    return 0;
  }
  return 1;
}

}  // namespace nhupdate
