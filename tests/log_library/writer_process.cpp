#include "tests/log_library/writer_process.h"

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/unused_name.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kEndWaitMs = 150 * 1000;  // within what ctest allows, and enough on a busy machine

std::wstring Quoted(const std::wstring& text) {
  return L"\"" + text + L"\" ";
}

}  // namespace

WriterGate::WriterGate()
    : name_(L"Local\\nhupdate-gate-" + UnusedName()),
      event_(::CreateEventW(nullptr, TRUE, FALSE, name_.c_str())) {}

void WriterGate::Open() const {
  ::SetEvent(event_.Get());
}

WriterProcess::WriterProcess(const LogPlace& place, const WriterGate& gate,
                             const std::wstring& name, int count)
    : process_(StartChild(Quoted(TestProgramFolder() + L"\\log_writer.exe") +
                          Quoted(LogLibraryPath()) + Quoted(place.Settings()) +
                          Quoted(place.Folder()) + Quoted(name) + Quoted(std::to_wstring(count)) +
                          Quoted(gate.Name()))
                   .handle) {}

WriterProcess::~WriterProcess() {
  Kill();
}

int WriterProcess::Wait() {
  EXPECT_EQ(::WaitForSingleObject(process_.Get(), kEndWaitMs), static_cast<DWORD>(WAIT_OBJECT_0));
  DWORD code = 0;
  ::GetExitCodeProcess(process_.Get(), &code);
  return static_cast<int>(code);
}

void WriterProcess::Kill() {
  if (process_.IsValid()) {
    ::TerminateProcess(process_.Get(), 99);
    ::WaitForSingleObject(process_.Get(), kEndWaitMs);
  }
}

}  // namespace nhupdate_test
