#include "tests/end_to_end/support/program_run.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <thread>

#include "base/paths.h"
#include "base/unique_handle.h"
#include "tests/end_to_end/support/child_journal.h"
#include "tests/end_to_end/support/process_token.h"
#include "tests/end_to_end/support/program_end.h"

namespace nhupdate_test {

namespace {

using nhupdate::UniqueKernelHandle;

struct Pipe {
  UniqueKernelHandle reading;
  UniqueKernelHandle writing;
};

Pipe CreateOutputPipe() {
  SECURITY_ATTRIBUTES inheritable = {sizeof(inheritable), nullptr, TRUE};
  Pipe pipe;
  EXPECT_TRUE(::CreatePipe(pipe.reading.Receive(), pipe.writing.Receive(), &inheritable, 0));
  ::SetHandleInformation(pipe.reading.Get(), HANDLE_FLAG_INHERIT, 0);
  return pipe;
}

std::string ReadToTheEnd(HANDLE pipe) {
  std::string bytes;
  std::array<char, 4096> buffer = {};
  DWORD read = 0;
  while (::ReadFile(pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr)) {
    bytes.append(buffer.data(), read);
  }
  return bytes;
}

bool TryToCreate(const ProgramStart& start, HANDLE output, PROCESS_INFORMATION& process) {
  std::wstring command_line = L"\"" + start.executable + L"\" " + start.arguments;
  const std::wstring folder = nhupdate::ParentFolder(start.executable) + L"\\";
  const bool has_streams = start.streams != Streams::kNone;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  if (has_streams) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
  }
  const DWORD flags = CREATE_SUSPENDED | (has_streams ? 0 : DETACHED_PROCESS);
  const UniqueKernelHandle own = OpenOwnToken();
  if (start.is_elevated == IsElevated(own.Get())) {
    return ::CreateProcessW(start.executable.c_str(), command_line.data(), nullptr, nullptr,
                            has_streams, flags, nullptr, folder.c_str(), &startup, &process);
  }
  const UniqueKernelHandle token = MakeToken(own.Get(), start.is_elevated);
  return ::CreateProcessAsUserW(token.Get(), start.executable.c_str(), command_line.data(), nullptr,
                                nullptr, has_streams, flags, nullptr, folder.c_str(), &startup,
                                &process);
}

// On a busy machine Wine now and then can't start a process, and can a moment later.
DWORD Create(const ProgramStart& start, HANDLE output, PROCESS_INFORMATION& process) {
  DWORD error = ERROR_INTERNAL_ERROR;
  for (int tries = 0; tries < 3 && error == ERROR_INTERNAL_ERROR; ++tries) {
    error = TryToCreate(start, output, process) ? ERROR_SUCCESS : ::GetLastError();
  }
  return error;
}

// The starts of stand-ins after the first `count` ones.
std::vector<ChildStart> StandInsSince(std::size_t count) {
  std::array<wchar_t, 1024> path = {};
  ::GetEnvironmentVariableW(kChildJournalVariable, path.data(), static_cast<DWORD>(path.size()));
  const std::vector<ChildStart> starts = ReadChildJournal(path.data());
  return {starts.begin() + static_cast<std::ptrdiff_t>(count), starts.end()};
}

// The desktop has to be there before the program, or it would be started as a child of that.
void PrepareDesktop() {
  const UniqueKernelHandle used(::OpenEventW(EVENT_MODIFY_STATE, FALSE, L"nhupdate-desktop-used"));
  if (used.IsValid()) {
    ::SetEvent(used.Get());
  }
  ::GetDesktopWindow();
}

}  // namespace

ProgramRun RunToTheEnd(const ProgramStart& start) {
  PrepareDesktop();
  const std::size_t earlier_stand_ins = StandInsSince(0).size();
  ProgramRun run;
  CProcessJob job;
  Pipe pipe = CreateOutputPipe();
  CBoxWatcher watcher(start.answer);

  PROCESS_INFORMATION information = {};
  const DWORD error = Create(start, pipe.writing.Get(), information);
  if (error != ERROR_SUCCESS) {
    ADD_FAILURE() << "The program can't be started: error " << error;
    return run;
  }
  const UniqueKernelHandle process(information.hProcess);
  const UniqueKernelHandle thread(information.hThread);
  job.Add(process.Get());
  pipe.writing.Reset();
  if (start.streams == Streams::kClosed) {
    pipe.reading.Reset();
  }
  std::thread reader([&] { run.output = ReadToTheEnd(pipe.reading.Get()); });
  if (start.end_before_change > 0) {
    EXPECT_TRUE(EndBeforeChange(process.Get(), thread.Get(), start.end_before_change));
  }
  if (start.fail_allocation > 0) {
    EXPECT_TRUE(FailAllocation(process.Get(), thread.Get(), start.fail_allocation));
  }
  ::ResumeThread(thread.Get());

  run.process_id = information.dwProcessId;
  run.has_ended = job.WaitForAll(start.time_limit_ms, [&] {
    if (start.while_running) {
      start.while_running();
    }
    if (start.end_when && start.end_when()) {
      ::TerminateProcess(process.Get(), kEndedByTest);
    }
  });
  reader.join();
  run.boxes = watcher.Finish();
  run.managers = job.Managers(StandInsSince(earlier_stand_ins));
  run.ends = job.Ends();
  EXPECT_TRUE(::GetExitCodeProcess(process.Get(), &run.exit_code));
  EXPECT_TRUE(run.has_ended) << "The time limit was reached.";
  return run;
}

}  // namespace nhupdate_test
