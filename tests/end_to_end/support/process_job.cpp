#include "tests/end_to_end/support/process_job.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "base/paths.h"
#include "base/strings.h"

namespace nhupdate_test {

namespace {

bool IsAmong(const std::vector<ChildStart>& starts, DWORD process_id) {
  return std::any_of(starts.begin(), starts.end(),
                     [&](const ChildStart& start) { return start.process_id == process_id; });
}

}  // namespace

CProcessJob::CProcessJob()
    : job_(::CreateJobObjectW(nullptr, nullptr)),
      port_(::CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 1)) {
  JOBOBJECT_ASSOCIATE_COMPLETION_PORT association = {};
  association.CompletionKey = job_.Get();
  association.CompletionPort = port_.Get();
  EXPECT_TRUE(::SetInformationJobObject(job_.Get(), JobObjectAssociateCompletionPortInformation,
                                        &association, sizeof(association)));
}

void CProcessJob::Add(HANDLE process) {
  EXPECT_TRUE(::AssignProcessToJobObject(job_.Get(), process));
}

bool CProcessJob::WaitForAll(DWORD time_limit_ms, const std::function<void()>& meanwhile) {
  constexpr DWORD kPollMs = 5;
  constexpr DWORD kHurriedPollMs = 1;
  bool are_all_known = true;
  const ULONGLONG end = ::GetTickCount64() + time_limit_ms;
  while (::GetTickCount64() < end) {
    DWORD message = 0;
    ULONG_PTR key = 0;
    OVERLAPPED* process_id = nullptr;
    if (::GetQueuedCompletionStatus(port_.Get(), &message, &key, &process_id,
                                    are_all_known ? kPollMs : kHurriedPollMs) &&
        TakeMessage(message, static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(process_id)))) {
      return true;
    }
    are_all_known = LearnPaths();
    if (meanwhile) {
      meanwhile();
    }
  }
  ::TerminateJobObject(job_.Get(), 1);
  return false;
}

std::vector<ManagerProcess> CProcessJob::Managers(const std::vector<ChildStart>& stand_ins) const {
  std::vector<ManagerProcess> managers;
  for (const auto& [manager, process] : processes_) {
    if (manager.path.empty() ? !IsAmong(stand_ins, manager.id)
                             : nhupdate::EqualsIgnoringCase(nhupdate::FileName(manager.path),
                                                            L"NHUpdateManager.exe")) {
      managers.push_back(manager);
      EXPECT_TRUE(!process.IsValid() ||
                  ::GetExitCodeProcess(process.Get(), &managers.back().exit_code));
    }
  }
  return managers;
}

bool CProcessJob::TakeMessage(DWORD message, DWORD process_id) {
  if (message == JOB_OBJECT_MSG_NEW_PROCESS) {
    Note(process_id);
  } else if (message == JOB_OBJECT_MSG_EXIT_PROCESS ||
             message == JOB_OBJECT_MSG_ABNORMAL_EXIT_PROCESS) {
    ends_.push_back(process_id);
  }
  return message == JOB_OBJECT_MSG_ACTIVE_PROCESS_ZERO;
}

void CProcessJob::Note(DWORD process_id) {
  processes_.emplace_back(ManagerProcess{process_id, {}, 0},
                          ::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process_id));
}

// A process has no path yet while it is being created, and keeps it while somebody holds it open.
bool CProcessJob::LearnPaths() {
  bool are_all_known = true;
  for (auto& [manager, process] : processes_) {
    std::array<wchar_t, 1024> path = {};
    DWORD units = static_cast<DWORD>(path.size());
    if (manager.path.empty() &&
        ::QueryFullProcessImageNameW(process.Get(), 0, path.data(), &units)) {
      manager.path = path.data();
    }
    are_all_known = are_all_known && !manager.path.empty();
  }
  return are_all_known;
}

}  // namespace nhupdate_test
