#include "tests/support/installed_product.h"

#include <gtest/gtest.h>

#include <cwctype>

#include "app/program.h"
#include "base/strings.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/product_surroundings.h"

namespace nhupdate_test {

namespace {

void ReplaceWholeNumber(std::wstring& text, const std::wstring& number,
                        const std::wstring& placeholder) {
  std::size_t position = text.find(number);
  while (position != std::wstring::npos) {
    const std::size_t end = position + number.size();
    const bool stands_alone = (position == 0 || !std::iswdigit(text[position - 1])) &&
                              (end == text.size() || !std::iswdigit(text[end]));
    if (stands_alone) {
      text.replace(position, number.size(), placeholder);
    }
    position = text.find(number, position + 1);
  }
}

}  // namespace

InstalledProduct::InstalledProduct(const ProductOptions& options) : options_(options) {
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
  return {.executable = ExecutablePath(),
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
  // These would change this process for good.
  INTERPOSER(SetErrorMode) error_mode([](UINT) -> UINT { return 0; });
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

std::wstring WithPlaceholders(std::wstring text, const std::wstring& root,
                              const std::wstring& program_data) {
  nhupdate::ReplaceAll(text, root, L"{root}");
  nhupdate::ReplaceAll(text, program_data, L"{data}");
  ReplaceWholeNumber(text, std::to_wstring(::GetCurrentProcessId()), L"{pid}");
  return text;
}

}  // namespace nhupdate_test
