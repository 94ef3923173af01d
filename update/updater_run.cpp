#include "update/updater_run.h"

#include <tuple>

#include "update/child_launch.h"

namespace nhupdate {

namespace {

// Of a check: 0 says that there is something.
constexpr DWORD kExitFound = 0;
constexpr DWORD kExitNothingFound = 1;

}  // namespace

CheckOutcome CheckWithUpdater(const ChildLaunch& launch, const std::wstring& updater_folder,
                              const CheckMessages& messages, const CLog& log) {
  const LaunchOutcome check = Launch(launch, updater_folder, log);
  if (check.state == LaunchState::kMissing) {
    return CheckOutcome::kUpdaterMissing;
  }
  if (check.state == LaunchState::kNotLaunched || !check.exit_code) {
    return CheckOutcome::kFailed;
  }
  switch (*check.exit_code) {
    case kExitFound:
      log.Write(LogLevel::kInformation, messages.found);
      return CheckOutcome::kFound;
    case kExitNothingFound:
      log.Write(LogLevel::kInformation, messages.nothing_found);
      return CheckOutcome::kNothingFound;
    default:
      log.Write(LogLevel::kError, L"Updater error.");
      return CheckOutcome::kFailed;
  }
}

UpdateOutcome UpdateWithUpdater(const ChildLaunch& launch, const std::wstring& updater_folder,
                                const CLog& log) {
  LaunchOutcome update = Launch(launch, updater_folder, log);
  switch (update.state) {
    case LaunchState::kMissing:
      return UpdateOutcome::kUpdaterMissing;
    case LaunchState::kNotLaunched:
      return UpdateOutcome::kNotLaunched;
    case LaunchState::kLaunched:
      break;
  }
  if (!update.IsSuccess()) {
    log.Write(LogLevel::kInformation, L"Update fail.");
    std::ignore = update.process.Release();
    return UpdateOutcome::kFailed;
  }
  return UpdateOutcome::kDone;
}

}  // namespace nhupdate
