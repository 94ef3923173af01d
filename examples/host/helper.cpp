#include "helper.h"

#include <system_error>

#include "advice.h"
#include "child_process.h"
#include "named_turn.h"
#include "update_chain.h"

namespace nimba_hub {

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kHelperText[] =
    L"Nimba Hub is being updated and will start again by itself.\n\nPlease don't switch off the "
    L"computer. If you close this window, the update goes on, but Nimba Hub isn't started.";
constexpr wchar_t kStillAtWork[] =
    L"The update is still going on. Please don't start Nimba Hub before it has ended.";
constexpr wchar_t kCannotStart[] = L"The update could not be started.";
constexpr wchar_t kInUse[] =
    L"Nimba Hub is also open in the session of another user. Please close it there first.";
constexpr wchar_t kInstallAgain[] = L"Nimba Hub can't be started. Please install it again.";

bool IsTryWorthAsking(Decision decision) {
  return decision == Decision::kTryAgain || decision == Decision::kFinish;
}

// The product as it is now, old or new.
void StartProduct(const Settings& settings, const CStatusWindow& window) {
  Settings for_product = settings;
  for_product.is_helper = false;
  // The user has only just decided about an update, whatever became of it.
  for_product.first_check = settings.offer_again;
  if (StartProgram(settings.program, ToArguments(for_product)) == nullptr) {
    window.Tell(kInstallAgain, MB_ICONERROR);
  }
}

// Tells the user how the update ended. Returns whether he wants what is advised to be tried.
bool IsToBeTriedAgain(const Advice& advice, const CStatusWindow& window) {
  if (IsTryWorthAsking(advice.decision)) {
    return window.Ask(advice.text, MB_RETRYCANCEL | MB_ICONWARNING);
  }
  window.Tell(advice.text, MB_ICONWARNING);
  return false;
}

}  // namespace

OwnedHandle StartHelper(const Settings& settings) {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error) / L"Nimba Hub update";
  // Not by the updater's name, whose stages end each other by it.
  const fs::path helper = folder / L"NimbaHubUpdateHelper.exe";
  fs::create_directories(folder, error);
  if (folder.is_relative() ||
      !fs::copy_file(OwnProgram(), helper, fs::copy_options::overwrite_existing, error)) {
    return nullptr;
  }
  Settings for_helper = settings;
  for_helper.is_helper = true;
  return StartProgram(helper, ToArguments(for_helper));
}

HostEnd RunHelper(const Settings& settings) {
  OwnedHandle turn = TakeTurn(kUpdateTurn);
  if (turn == nullptr) {
    return HostEnd::kAlreadyRunning;
  }
  CStatusWindow window(kHelperWindow, L"Nimba Hub", kHelperText);
  // The one that has started this.
  constexpr int kOwnProduct = 1;
  if (CountProcesses(settings.program.filename().wstring()) > kOwnProduct) {
    window.Tell(kInUse, MB_ICONWARNING);
    return HostEnd::kNotStarted;
  }

  // None as long as nothing has been started and the product is open.
  std::optional<Advice> advice;
  do {
    const Try result = RunUpdate(advice ? advice->again : Mode::kUpdate,
                                 settings.program.parent_path(), window, settings.longest_wait);
    switch (result.progress) {
      case Progress::kEnded:
        advice = AdviceFor(result.end.stage, result.end.code);
        break;
      case Progress::kStillAtWork:
        window.Tell(kStillAtWork, MB_ICONINFORMATION);
        return HostEnd::kStillAtWork;
      case Progress::kNotStarted:
        window.Tell(kCannotStart, MB_ICONERROR);
        [[fallthrough]];
      case Progress::kRefused:
        if (!advice) {
          return result.progress == Progress::kRefused ? HostEnd::kRefused : HostEnd::kNotStarted;
        }
    }
  } while (advice->decision != Decision::kDone && IsToBeTriedAgain(*advice, window));

  // The product looks whether an update is going on.
  turn.reset();
  if (advice->decision == Decision::kFinish) {
    window.Tell(kInstallAgain, MB_ICONERROR);
  } else {
    StartProduct(settings, window);
  }
  return advice->decision == Decision::kDone ? HostEnd::kOk : HostEnd::kNotUpdated;
}

}  // namespace nimba_hub
