#include "log_library/logger.h"

#include <utility>

#include "log_library/header_record.h"
#include "log_library/record_level.h"
#include "log_library/record_text.h"
#include "log_library/record_time.h"

namespace nhupdate {

namespace {

constexpr wchar_t kOwnTag[] = L"NSWLogDynamic64U";

// How often it is looked up whether the file still has its name. A file that another process has
// rotated is full, which is noticed at once; this is for files that were renamed by other hands.
constexpr ULONGLONG kCheckIntervalMs = 1000;

// After a rotation that failed: most likely someone has the file open, and will for a while.
constexpr ULONGLONG kRotationRetryMs = 1000;

// Half a second in all. A virus scanner, say, holds a file for no longer than a moment.
constexpr int kOpenAttempts = 20;
constexpr DWORD kOpenRetryMs = 25;

std::wstring LossText(std::uint64_t lost_records) {
  return L"Records before this one that could not be written: " + std::to_wstring(lost_records);
}

const wchar_t* AsideText(OpenResult reason) {
  switch (reason) {
    case OpenResult::kHeld:
      return L", in place of NHUpdateManager.log, which another program keeps to itself";
    case OpenResult::kNotTrustworthy:
      return L", in place of NHUpdateManager.log, which is a link, a folder or a file of several "
             L"names";
    default:
      return L", in place of NHUpdateManager.log, which can't be opened";
  }
}

}  // namespace

StartResult CLogger::Start(std::string_view interface_version, const LogSettings& settings,
                           const std::wstring& log_folder) {
  settings_ = settings;
  header_ = HeaderText(interface_version);
  if (const StartResult result = folder_.Open(log_folder); result != StartResult::kStarted) {
    return result;
  }
  queue_.Open();
  if (const OpenResult result = OpenCurrentFile(); result == OpenResult::kOpened) {
    Append(kInformationLevel, kOwnTag, header_);
  } else if (!StepAside(result)) {
    return StartResult::kFileNotOpened;
  }
  return StartResult::kStarted;
}

void CLogger::Write(int level, std::wstring_view tag, std::wstring_view text) {
  if (level >= settings_.level) {
    Append(level, tag, text);
  }
}

OpenResult CLogger::OpenCurrentFile() {
  OpenResult result = file_.Open(folder_);
  for (int attempt = 1; attempt < kOpenAttempts && result != OpenResult::kOpened &&
                        result != OpenResult::kNotTrustworthy;
       ++attempt) {
    ::Sleep(kOpenRetryMs);
    result = file_.Open(folder_);
  }
  return result;
}

void CLogger::Append(int level, std::wstring_view tag, std::wstring_view text) {
  {
    const CWriteTurn turn(queue_);
    PrepareFile();
    AppendToFile(level, tag, text);
  }
  // Others need not wait for that.
  if (std::exchange(is_cleanup_due_, false)) {
    DeleteOutdated();
  }
}

void CLogger::AppendToFile(int level, std::wstring_view tag, std::wstring_view text) {
  // The time is taken within the turn, so the records of all processes stand in its order.
  const RecordOrigin origin = {CurrentRecordTime(), ::GetCurrentProcessId(),
                               ::GetCurrentThreadId()};
  if (!ReportLoss(origin) || !file_.Append(FormatRecord(origin, level, tag, text))) {
    ++lost_records_;
  }
}

bool CLogger::ReportLoss(const RecordOrigin& origin) {
  if (lost_records_ != 0 &&
      !file_.Append(FormatRecord(origin, kWarningLevel, kOwnTag, LossText(lost_records_)))) {
    return false;
  }
  lost_records_ = 0;
  return true;
}

void CLogger::PrepareFile() {
  const ULONGLONG now = ::GetTickCount64();
  LogFileState state = file_.State();
  if (!state.is_deleted && now < (IsFull(state) ? next_rotation_ : next_check_)) {
    return;
  }
  next_check_ = now + kCheckIntervalMs;
  const OpenResult named = FollowRename();
  state = file_.State();
  if (!state.is_deleted && !IsFull(state)) {
    return;
  }
  if (named == OpenResult::kOpened ? Rotate() : StepAside(named)) {
    is_cleanup_due_ = true;
    return;
  }
  next_rotation_ = now + kRotationRetryMs;
  if (file_.State().is_deleted) {
    file_.Close();  // what would be written there is lost, and is to count as such
  }
}

OpenResult CLogger::FollowRename() {
  CLogFile named;
  const OpenResult result = named.Open(folder_);
  if (result == OpenResult::kOpened && !named.IsSameFile(file_)) {
    file_ = std::move(named);
  }
  return result;
}

bool CLogger::Rotate() {
  if (!file_.Rename(folder_)) {
    // Another process may have been quicker.
    return FollowRename() == OpenResult::kOpened && !IsFull(file_.State());
  }
  CLogFile fresh;
  if (const OpenResult result = fresh.Open(folder_); result != OpenResult::kOpened) {
    return StepAside(result);
  }
  file_ = std::move(fresh);
  return true;
}

bool CLogger::StepAside(OpenResult reason) {
  if (!file_.MakeRotated(folder_)) {
    return false;
  }
  next_check_ = ::GetTickCount64() + kCheckIntervalMs;
  AppendToFile(kInformationLevel, kOwnTag, header_ + AsideText(reason));
  return true;
}

void CLogger::DeleteOutdated() const {
  folder_.DeleteOutdated(settings_.max_files - 1, settings_.max_age_days);
}

}  // namespace nhupdate
