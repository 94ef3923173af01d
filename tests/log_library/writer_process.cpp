#include "tests/log_library/writer_process.h"

#include <gtest/gtest.h>

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
                          Quoted(gate.Name()))) {}

WriterProcess::~WriterProcess() {
  Kill();
}

int WriterProcess::Wait() {
  EXPECT_EQ(::WaitForSingleObject(process_.handle.Get(), kEndWaitMs),
            static_cast<DWORD>(WAIT_OBJECT_0));
  DWORD code = 0;
  ::GetExitCodeProcess(process_.handle.Get(), &code);
  return static_cast<int>(code);
}

void WriterProcess::Kill() {
  if (process_.handle.IsValid()) {
    // Wine lets go of what a killed process held while a write of it may still be going on, and so
    // the next writer would write over it. A thread stands still only between two such calls; that
    // it does is known when its registers can be read.
    CONTEXT registers = {};
    registers.ContextFlags = CONTEXT_CONTROL;
    ::SuspendThread(process_.first_thread.Get());
    ::GetThreadContext(process_.first_thread.Get(), &registers);
    ::TerminateProcess(process_.handle.Get(), 99);
    ::WaitForSingleObject(process_.handle.Get(), kEndWaitMs);
  }
}

}  // namespace nhupdate_test
