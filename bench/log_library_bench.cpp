// Records written through the log library as it is shipped, beside bare writes of the same bytes
// and a logging library that is widely used.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "bench/spdlog_file.h"
#include "bench/support/folders.h"
#include "bench/support/pairs.h"
#include "bench/support/started_log.h"

namespace nhupdate_bench {

namespace {

constexpr char kHead[] = "2026-11-21T15:29:01.146+00:00 [1000:1004] INFO  [NHUpdateManager] ";

// The bytes of a run stay below the size at which the library begins a new file.
struct Case {
  const char* name;
  const char* what;
  std::size_t units;
  int records;
};

constexpr Case kShort = {"short", "20,000 records of 100 characters", 100, 20'000};
constexpr Case kLong = {"long", "1,000 records of 4,000 characters", 4'000, 1'000};

// A file that is open as the library has it: for appending only, and shared.
class BareFile {
 public:
  explicit BareFile(const std::wstring& path)
      : file_(::CreateFileW(path.c_str(), FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (!file_.IsValid()) {
      GiveUp("Can't make a file.");
    }
  }

  void Write(const std::string& bytes) const {
    DWORD written = 0;
    if (!::WriteFile(file_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                     nullptr)) {
      GiveUp("Can't write.");
    }
  }

 private:
  nhupdate::UniqueFile file_;
};

// Each run begins with an empty folder and open files.
class Measured {
 public:
  explicit Measured(const Case& which)
      : which_(which),
        text_(which.units, L'x'),
        bytes_(kHead + std::string(which.units, 'x') + "\n") {}

  [[nodiscard]] Work Library() {
    return {[this] {
              const nhupdate::CLog log = log_->Log();
              for (int record = 0; record < which_.records; ++record) {
                log.WriteText(nhupdate::LogLevel::kInformation, text_);
              }
            },
            [this] {
              Empty();
              log_ = std::make_unique<StartedLog>(Folder());
            }};
  }

  [[nodiscard]] Work BareWrites() {
    return {[this] {
              for (int record = 0; record < which_.records; ++record) {
                file_->Write(bytes_);
              }
            },
            [this] { Reopen(); }};
  }

  [[nodiscard]] Work Spdlog() {
    return {[this] {
              for (int record = 0; record < which_.records; ++record) {
                spdlog_->Write(text_);
              }
            },
            [this] {
              Empty();
              spdlog_ = std::make_unique<SpdlogFile>(Folder() + L"\\rival.log");
            }};
  }

  [[nodiscard]] Work WritesByTurns() {
    return {[this] {
              for (int record = 0; record < which_.records; ++record) {
                ::WaitForSingleObject(mutex_.Get(), INFINITE);
                file_->Write(bytes_);
                ::ReleaseMutex(mutex_.Get());
              }
            },
            [this] { Reopen(); }};
  }

 private:
  [[nodiscard]] std::wstring Folder() const { return scratch_.Path() + L"\\log"; }

  void Empty() {
    log_.reset();
    file_.reset();
    spdlog_.reset();
    RemoveTree(Folder());
    MakeFolder(Folder());
  }

  void Reopen() {
    Empty();
    file_.emplace(Folder() + L"\\bare.log");
  }

  const Case which_;
  const std::wstring text_;
  const std::string bytes_;
  const ScratchFolder scratch_{TemporaryFolder()};
  const nhupdate::UniqueKernelHandle mutex_{
      ::CreateMutexW(nullptr, FALSE, L"Global\\nhupdate-bench")};
  std::unique_ptr<StartedLog> log_;
  std::optional<BareFile> file_;
  std::unique_ptr<SpdlogFile> spdlog_;
};

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const Case& which : {kShort, kLong}) {
    Measured measured(which);
    const std::string name = std::string("log_library_") + which.name;
    const std::string what = std::string("log of ") + which.what;
    pairs.Compare({name, what, "WriteFile of the same bytes in a bare loop"}, measured.Library(),
                  measured.BareWrites());
    pairs.Compare({name + "_turns", what, "the same loop with a named mutex around each WriteFile"},
                  measured.Library(), measured.WritesByTurns());
    pairs.Compare(
        {name + "_spdlog", what, "spdlog 1.10, one process alone, flushed behind each record"},
        measured.Library(), measured.Spdlog());
  }
}

}  // namespace nhupdate_bench
