#include "log_library/logger.h"

#include <utility>

#include "log_library/header_record.h"
#include "log_library/record_level.h"
#include "log_library/record_text.h"

namespace nhupdate {

namespace {

constexpr wchar_t kOwnTag[] = L"NSWLogDynamic64U";

// How often the name is looked up that the file should have. A full file, which is what a rotated
// one is, shows at once; this is for files that were renamed or deleted by other hands.
constexpr ULONGLONG kCheckIntervalMs = 1000;

// After a rotation that failed: most likely someone has the file open, and will for a while.
constexpr ULONGLONG kRotationRetryMs = 1000;

std::wstring LossText(std::uint64_t lost_records) {
  return L"Records before this one that could not be written: " + std::to_wstring(lost_records);
}

}  // namespace

StartResult CLogger::Start(std::string_view program_version, const LogSettings& settings,
                           const std::wstring& log_folder) {
  settings_ = settings;
  if (const StartResult result = folder_.Open(log_folder); result != StartResult::kStarted) {
    return result;
  }
  if (const StartResult result = file_.Open(folder_); result != StartResult::kStarted) {
    return result;
  }
  queue_.Open();
  Append(kInformationLevel, kOwnTag, HeaderText(program_version));
  const CWriteTurn turn(queue_);
  if (turn.IsOurs()) {
    DeleteOutdated();
  }
  return StartResult::kStarted;
}

void CLogger::Write(int level, std::wstring_view tag, std::wstring_view text) {
  if (level >= settings_.level) {
    Append(level, tag, text);
  }
}

void CLogger::Append(int level, std::wstring_view tag, std::wstring_view text) {
  const CWriteTurn turn(queue_);
  PrepareFile(turn.IsOurs());
  // The time is taken within the turn, so the records of all processes stand in its order.
  const RecordOrigin origin = {CurrentRecordTime(), ::GetCurrentProcessId(),
                               ::GetCurrentThreadId()};
  if (ReportLoss(origin) && file_.Append(FormatRecord(origin, level, tag, text))) {
    return;
  }
  ++lost_records_;
}

bool CLogger::ReportLoss(const RecordOrigin& origin) {
  if (lost_records_ != 0 &&
      !file_.Append(FormatRecord(origin, kWarningLevel, kOwnTag, LossText(lost_records_)))) {
    return false;
  }
  lost_records_ = 0;
  return true;
}

void CLogger::PrepareFile(bool is_our_turn) {
  const ULONGLONG now = ::GetTickCount64();
  if (now < (IsFull() ? next_rotation_ : next_check_)) {
    return;
  }
  next_check_ = now + kCheckIntervalMs;
  FollowRename();
  if (IsFull() && !(is_our_turn && Rotate())) {
    next_rotation_ = now + kRotationRetryMs;
  }
}

void CLogger::FollowRename() {
  CLogFile named;
  if (named.Open(folder_) == StartResult::kStarted && !named.IsSameFile(file_)) {
    file_ = std::move(named);
  }
}

bool CLogger::Rotate() {
  if (!file_.Rename(folder_, folder_.NextRotatedFile())) {
    return false;
  }
  CLogFile fresh;
  if (fresh.Open(folder_) != StartResult::kStarted) {
    return false;
  }
  file_ = std::move(fresh);
  DeleteOutdated();
  return true;
}

void CLogger::DeleteOutdated() const {
  folder_.DeleteOutdated(settings_.max_files - 1, settings_.max_age_days);
}

}  // namespace nhupdate
