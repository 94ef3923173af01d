#pragma once

// An installed product in a scratch folder and a manager that takes itself to be running in it:
//
//   {root}\Nimba Hub\NHUpdateManager\NHUpdateManager.exe   (not a real program)
//   {data}                                                 the ProgramData folder
//
// Only what a test needs is there. The manager writes its log through the recording library.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/manager_center.h"
#include "tests/support/log_journal.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

struct SurroundingFacts;  // see tests/support/product_surroundings.h

struct ProductOptions {
  bool elevated = true;
  bool has_program_data = true;
  // Where the running executable lies, below the base folder.
  std::wstring module = L"\\NHUpdateManager";
  // The file name, without extension, of the log library's variant; empty for none at all.
  std::wstring log_library = L"recording_log";
  // What Windows gives for the running executable's path when it isn't where that lies.
  std::optional<std::wstring> executable = std::nullopt;
};

class InstalledProduct {
 public:
  explicit InstalledProduct(const ProductOptions& options = {});
  ~InstalledProduct();
  InstalledProduct(const InstalledProduct&) = delete;
  InstalledProduct& operator=(const InstalledProduct&) = delete;

  [[nodiscard]] std::wstring Root() const { return scratch_.Path() + L"\\Corvane"; }
  [[nodiscard]] std::wstring Base() const { return Root() + L"\\Nimba Hub"; }
  [[nodiscard]] std::wstring Module() const { return Base() + options_.module; }
  [[nodiscard]] std::wstring ExecutablePath() const { return Module() + L"\\NHUpdateManager.exe"; }
  [[nodiscard]] std::wstring App() const { return Base() + L"\\Updater\\App"; }
  [[nodiscard]] std::wstring ProgramData() const { return scratch_.Path() + L"\\ProgramData"; }
  [[nodiscard]] std::wstring Journal() const { return scratch_.Path() + L"\\journal.txt"; }

  // What Windows tells the program about itself during the two runs below.
  [[nodiscard]] SurroundingFacts Facts() const;

  // Runs the manager's start-up, with Windows telling it that it lies in the scratch folder and
  // is, or is not, elevated. The start-up's own records are kept.
  void Start();

  // The same in a process that isn't elevated, from now on.
  void StartUnelevated() {
    options_.elevated = false;
    Start();
  }

  // The manager; started, and with no records yet, when Start has not been called.
  [[nodiscard]] nhupdate::CManagerCenter& Manager();

  // Runs the whole program as if it were started in the scratch folder with these arguments, and
  // returns its exit code. It makes, and destroys, a manager of its own.
  [[nodiscard]] int RunProgram(const std::wstring& arguments);

  // Every call into the log library since the last ForgetRecords.
  [[nodiscard]] std::vector<LogCall> LogCalls() const;

  // The records since the last ForgetRecords, each as L"level|text", with {root}, {base}
  // and {data} for folders and {pid} for this process (tests/support/placeholders.h).
  [[nodiscard]] std::vector<std::wstring> Transcript() const;

  void ForgetRecords();

  // Destroys the manager, which unloads the log library.
  void DestroyManager() { manager_.reset(); }

 private:
  ScratchFolder scratch_;
  ProductOptions options_;
  std::unique_ptr<nhupdate::CManagerCenter> manager_;
  std::size_t forgotten_calls_ = 0;
};

}  // namespace nhupdate_test
