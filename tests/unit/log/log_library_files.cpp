#include "tests/unit/log/log_library_files.h"

#include <gtest/gtest.h>

#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/log_journal.h"

namespace nhupdate_test {

namespace {

std::wstring JournalFile(const ScratchFolder& scratch) {
  return scratch.Path() + L"\\journal.txt";
}

}  // namespace

LogLibraryFiles::LogLibraryFiles() {
  ::SetEnvironmentVariableW(kLogJournalVariable, JournalFile(scratch_).c_str());
}

LogLibraryFiles::~LogLibraryFiles() {
  ::SetEnvironmentVariableW(kLogJournalVariable, nullptr);
}

std::wstring LogLibraryFiles::Add(const std::wstring& variant) const {
  const std::wstring path = Folder() + L"\\" + variant + L".dll";
  EXPECT_TRUE(
      ::CopyFileW((TestProgramFolder() + L"\\" + variant + L".dll").c_str(), path.c_str(), FALSE))
      << "Can't copy " << testing::PrintToString(variant);
  return path;
}

std::vector<std::wstring> LogLibraryFiles::Calls() const {
  std::vector<std::wstring> calls;
  for (const LogCall& call : ReadLogJournal(JournalFile(scratch_))) {
    std::wstring text = call.entry;
    for (const std::wstring& argument : call.arguments) {
      text += L"|" + argument;
    }
    calls.push_back(text);
  }
  return calls;
}

bool IsLoaded(const std::wstring& library_path) {
  return ::GetModuleHandleW(library_path.c_str()) != nullptr;
}

}  // namespace nhupdate_test
