#include "update/updater_run.h"

#include <tuple>

#include "app/manager_center.h"
#include "update/child_launch.h"

namespace nhupdate {

namespace {

// Of a check: 0 says that there is something.
constexpr DWORD kExitFound = 0;
constexpr DWORD kExitNothingFound = 1;

// Of an update.
constexpr DWORD kExitDone = 0;

}  // namespace

CheckOutcome CManagerCenter::CheckWithUpdater(const ChildLaunch& launch,
                                              const std::wstring& updater_folder,
                                              FormatString<> found_message,
                                              FormatString<> nothing_found_message) {
  const LaunchOutcome check = Launch(launch, updater_folder);
  if (check.state == LaunchState::kMissing) {
    return CheckOutcome::kUpdaterMissing;
  }
  if (check.state == LaunchState::kFailed || !check.exit_code) {
    return CheckOutcome::kFailed;
  }
  switch (*check.exit_code) {
    case kExitFound:
      Log(LogLevel::kInformation, found_message);
      return CheckOutcome::kFound;
    case kExitNothingFound:
      Log(LogLevel::kInformation, nothing_found_message);
      return CheckOutcome::kNothingFound;
    default:
      Log(LogLevel::kError, L"Updater error.");
      return CheckOutcome::kFailed;
  }
}

UpdateOutcome CManagerCenter::UpdateWithUpdater(const ChildLaunch& launch,
                                                const std::wstring& updater_folder) {
  LaunchOutcome update = Launch(launch, updater_folder);
  if (update.state == LaunchState::kMissing) {
    return UpdateOutcome::kUpdaterMissing;
  }
  if (update.state == LaunchState::kFailed) {
    return UpdateOutcome::kNotLaunched;
  }
  if (update.exit_code.value_or(kExitDone) != kExitDone) {
    Log(LogLevel::kInformation, L"Update fail.");
    std::ignore = update.process.Release();  // left open until this process ends
    return UpdateOutcome::kFailed;
  }
  return UpdateOutcome::kDone;
}

}  // namespace nhupdate
