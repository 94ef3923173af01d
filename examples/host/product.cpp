#include "product.h"

#include <tuple>

#include "advice.h"
#include "child_process.h"
#include "helper.h"
#include "named_turn.h"
#include "product_version.h"
#include "status_window.h"

namespace nimba_hub {

namespace {

using std::chrono::seconds;

// A check waits for the updater as long as that runs. After this time nobody waits for the check.
constexpr seconds kLongestCheck = std::chrono::hours(24);

constexpr wchar_t kProductText[] = L"This is Nimba Hub, at its work.";
constexpr wchar_t kOffer[] =
    L"A new version of Nimba Hub can be installed. Nimba Hub closes for that and starts again.\n\n"
    L"Install it now?";
constexpr wchar_t kNoHelper[] = L"The update could not be prepared.";

void ShowWindowOf(const wchar_t* class_name) {
  ::SetForegroundWindow(::FindWindowW(class_name, nullptr));
}

// The helper asks this window to close, as soon as the user has consented to the update.
void LetHelperUpdate(const Settings& settings, CStatusWindow& window) {
  const OwnedHandle helper = StartHelper(settings);
  if (helper == nullptr) {
    window.Tell(kNoHelper, MB_ICONERROR);
    return;
  }
  // However the helper ends without that, it has told the user what there is to tell.
  std::ignore = window.WaitFor(helper.get(), settings.longest_wait);
}

// Returns the time until the next check.
seconds CheckForUpdate(const Settings& settings, CStatusWindow& window) {
  const Command command = CommandFor(Mode::kDownload, settings.program.parent_path());
  const OwnedHandle check = StartProgram(command.program, command.argument);
  if (check == nullptr || window.WaitFor(check.get(), kLongestCheck) != Woken::kByObject) {
    return settings.check_every;
  }
  const Advice advice = AdviceFor(Mode::kDownload, ExitCodeOf(check.get()));
  switch (advice.decision) {
    case Decision::kOffer:
      if (window.Ask(kOffer, MB_OKCANCEL | MB_ICONQUESTION)) {
        LetHelperUpdate(settings, window);
      }
      // Each check after this one would start the download again.
      return settings.offer_again;
    case Decision::kReinstall:
      window.Tell(advice.text, MB_ICONWARNING);
      return settings.offer_again;
    default:
      return settings.check_every;
  }
}

}  // namespace

HostEnd RunProduct(const Settings& settings) {
  // No box in either case: as long as this process shows one it keeps its file from being replaced.
  if (IsTurnTaken(kUpdateTurn)) {
    ShowWindowOf(kHelperWindow);
    return HostEnd::kAlreadyRunning;
  }
  const OwnedHandle turn = TakeTurn(kProductTurn);
  if (turn == nullptr) {
    ShowWindowOf(kProductWindow);
    return HostEnd::kAlreadyRunning;
  }
  const std::wstring version = VersionIn(settings.program.parent_path());
  CStatusWindow window(kProductWindow, L"Nimba Hub " + version, kProductText);
  for (seconds pause = settings.first_check; window.Wait(pause) == Woken::kByTime;) {
    pause = CheckForUpdate(settings, window);
  }
  return HostEnd::kOk;
}

}  // namespace nimba_hub
