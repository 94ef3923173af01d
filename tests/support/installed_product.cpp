#include "tests/support/installed_product.h"

#include <cwctype>

#include "app/program.h"
#include "base/strings.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shlobj.h>

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

PWSTR CopyForShell(const std::wstring& text) {
  const std::size_t units = text.size() + 1;
  auto* copy = static_cast<wchar_t*>(::CoTaskMemAlloc(units * sizeof(wchar_t)));
  text.copy(copy, text.size());
  copy[text.size()] = L'\0';
  return copy;
}

// What Windows tells the program about itself while the object lives.
class Surroundings {
 public:
  Surroundings(const std::wstring& executable, const std::wstring& program_data,
               const ProductOptions& options)
      : executable_(executable), program_data_(program_data), options_(options) {}

 private:
  DWORD GiveExecutable(wchar_t* buffer, DWORD units) const {
    const DWORD length = static_cast<DWORD>(executable_.size());
    if (length >= units) {
      executable_.copy(buffer, units - 1);
      buffer[units - 1] = L'\0';
      ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return units;
    }
    executable_.copy(buffer, length);
    buffer[length] = L'\0';
    return length;
  }

  std::wstring executable_;
  std::wstring program_data_;
  ProductOptions options_;
  Interposer<decltype(::GetModuleFileNameW)> module_file_name_{
      "GetModuleFileNameW", [this](HMODULE module, wchar_t* buffer, DWORD units) -> DWORD {
        return module != nullptr ? module_file_name_.Original()(module, buffer, units)
                                 : GiveExecutable(buffer, units);
      }};
  Interposer<decltype(::SHGetKnownFolderPath)> known_folder_{
      "SHGetKnownFolderPath", [this](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
        *path = options_.has_program_data ? CopyForShell(program_data_) : nullptr;
        return options_.has_program_data ? S_OK : E_FAIL;
      }};
  Interposer<decltype(::GetTokenInformation)> token_information_{
      "GetTokenInformation",
      [this](HANDLE, TOKEN_INFORMATION_CLASS, void* information, DWORD, DWORD*) -> BOOL {
        static_cast<TOKEN_ELEVATION*>(information)->TokenIsElevated = options_.elevated ? 1 : 0;
        return TRUE;
      }};
};

}  // namespace

InstalledProduct::InstalledProduct(const ProductOptions& options) : options_(options) {
  CreateFolders(Module());
  CreateFolders(ProgramData());
  if (!options_.log_library.empty()) {
    ::CopyFileW((TestProgramFolder() + L"\\" + options_.log_library + L".dll").c_str(),
                (Module() + L"\\NSWLogDynamic64U.dll").c_str(), FALSE);
  }
  ::SetEnvironmentVariableW(kLogJournalVariable, Journal().c_str());
}

InstalledProduct::~InstalledProduct() {
  manager_.reset();
  ::SetEnvironmentVariableW(kLogJournalVariable, nullptr);
}

void InstalledProduct::Start() {
  const Surroundings surroundings(ExecutablePath(), ProgramData(), options_);

  manager_ = std::make_unique<nhupdate::CManagerCenter>();
  manager_->Initialize();
}

int InstalledProduct::RunProgram(const std::wstring& arguments) {
  const Surroundings surroundings(ExecutablePath(), ProgramData(), options_);
  std::wstring command_line = L"\"" + ExecutablePath() + L"\" " + arguments;
  Interposer<decltype(::GetCommandLineW)> get_command_line(
      "GetCommandLineW", [&]() -> wchar_t* { return command_line.data(); });
  // These would change this process for good.
  Interposer<decltype(::SetErrorMode)> error_mode("SetErrorMode", [](UINT) -> UINT { return 0; });
  Interposer<decltype(::SetDefaultDllDirectories)> dll_directories(
      "SetDefaultDllDirectories", [](DWORD) -> BOOL { return TRUE; });

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
