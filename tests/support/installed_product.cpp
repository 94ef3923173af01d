#include "tests/support/installed_product.h"

#include <gtest/gtest.h>

#include "app/program.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/placeholders.h"
#include "tests/support/product_surroundings.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

// COM has a hidden window for as long as it is ready. It is made for this process once, and not for
// each manager that comes and goes.
void KeepComReady() {
  static const HRESULT ready = ::CoInitialize(nullptr);
  EXPECT_TRUE(SUCCEEDED(ready)) << ready;
}

}  // namespace

InstalledProduct::InstalledProduct(const ProductOptions& options) : options_(options) {
  KeepComReady();
  CreateFolders(Module());
  CreateFolders(ProgramData());
  if (!options_.log_library.empty()) {
    EXPECT_TRUE(::CopyFileW((TestProgramFolder() + L"\\" + options_.log_library + L".dll").c_str(),
                            (Module() + L"\\NSWLogDynamic64U.dll").c_str(), FALSE))
        << "Can't copy " << testing::PrintToString(options_.log_library);
  }
  ::SetEnvironmentVariableW(kLogJournalVariable, Journal().c_str());
}

InstalledProduct::~InstalledProduct() {
  manager_.reset();
  ::SetEnvironmentVariableW(kLogJournalVariable, nullptr);
}

SurroundingFacts InstalledProduct::Facts() const {
  return {.executable = options_.executable.value_or(ExecutablePath()),
          .program_data = options_.has_program_data ? ProgramData() : L"",
          .elevated = options_.elevated};
}

void InstalledProduct::Start() {
  const ProductSurroundings surroundings(Facts());

  manager_ = std::make_unique<nhupdate::CManagerCenter>();
  manager_->Initialize();
}

int InstalledProduct::RunProgram(const std::wstring& arguments) {
  const ProductSurroundings surroundings(Facts());
  std::wstring command_line = L"\"" + ExecutablePath() + L"\" " + arguments;
  INTERPOSER(GetCommandLineW) get_command_line([&]() -> wchar_t* { return command_line.data(); });
  // The real functions would change this process for all later tests.
  INTERPOSER(SetThreadErrorMode) error_mode([](DWORD, DWORD*) -> BOOL { return TRUE; });
  INTERPOSER(SetDefaultDllDirectories) dll_directories([](DWORD) -> BOOL { return TRUE; });

  return nhupdate::RunProgram();
}

nhupdate::CManagerCenter& InstalledProduct::Manager() {
  if (!manager_) {
    Start();
    ForgetRecords();
  }
  return *manager_;
}

std::vector<LogCall> InstalledProduct::LogCalls() const {
  std::vector<LogCall> calls = ReadLogJournal(Journal());
  calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(forgotten_calls_));
  return calls;
}

std::vector<std::wstring> InstalledProduct::Transcript() const {
  std::vector<std::wstring> records = RecordsOf(LogCalls());
  for (std::wstring& record : records) {
    record = WithPlaceholders(record, Root(), ProgramData());
  }
  return records;
}

void InstalledProduct::ForgetRecords() {
  forgotten_calls_ = ReadLogJournal(Journal()).size();
}

}  // namespace nhupdate_test
