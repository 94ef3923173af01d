#include "update_chain.h"

#include <tuple>

#include "advice.h"
#include "child_process.h"
#include "product_version.h"

namespace nimba_hub {

namespace {

using std::chrono::steady_clock;

// Returns whether no process of the updater is left. Each stage starts the next one before it ends,
// so there is always one; a second look makes sure that none was missed while the list was made.
bool WaitForLastProcess(CStatusWindow& window, steady_clock::time_point end) {
  constexpr auto kLookEvery = std::chrono::milliseconds(250);
  constexpr int kEmptyLooks = 2;
  for (int empty_looks = 0; empty_looks < kEmptyLooks;) {
    if (steady_clock::now() >= end || window.Wait(kLookEvery) != Woken::kByTime) {
      return false;
    }
    empty_looks = CountProcesses(kUpdateProgramName) == 0 ? empty_looks + 1 : 0;
  }
  return true;
}

// Its files can't be replaced as long as it runs. One that takes too long costs a box of the
// updater and another try.
void CloseProduct(CStatusWindow& window) {
  constexpr auto kLongestClosing = std::chrono::seconds(30);
  const HWND product = ::FindWindowW(kProductWindow, nullptr);
  DWORD process_id = 0;
  ::GetWindowThreadProcessId(product, &process_id);
  const OwnedHandle process(::OpenProcess(SYNCHRONIZE, FALSE, process_id));
  ::PostMessageW(product, WM_CLOSE, 0, 0);
  if (process != nullptr) {
    std::ignore = window.WaitFor(process.get(), kLongestClosing);
  }
}

// Without a log only the versions are left to look at. That they are equal is no proof, since
// Version.txt is replaced before the folders; that they differ is one.
StageEnd EndByVersion(Mode mode, const std::filesystem::path& product_folder) {
  const std::wstring version = VersionIn(product_folder);
  const bool is_new = !version.empty() && version == VersionIn(StagedFolder(product_folder));
  return is_new ? StageEnd{Mode::kFinalUpdate, DWORD{0}} : StageEnd{mode, std::nullopt};
}

// 0 of a stage that isn't the last one says only that the next was started, and any copy of the
// program that another one has ended ends with 0 too.
bool IsProofOfNothing(DWORD code) {
  return code == 0;
}

}  // namespace

Try RunUpdate(Mode mode, const std::filesystem::path& product_folder, CStatusWindow& window,
              std::chrono::seconds longest_wait) {
  const CUpdateLog log(LogFolder());
  const Command command = CommandFor(mode, product_folder);
  const ElevatedStart start = StartElevated(command.program, command.argument, window.Get());
  if (start.process == nullptr) {
    return {start.error == ERROR_CANCELLED ? Progress::kRefused : Progress::kNotStarted, {}};
  }
  CloseProduct(window);

  const auto end = steady_clock::now() + longest_wait;
  if (window.WaitFor(start.process.get(), longest_wait) != Woken::kByObject) {
    return {Progress::kStillAtWork, {}};
  }
  const DWORD code = ExitCodeOf(start.process.get());
  if (!IsProofOfNothing(code)) {
    return {Progress::kEnded, {mode, code}};
  }
  if (!WaitForLastProcess(window, end)) {
    return {Progress::kStillAtWork, {}};
  }
  std::optional<StageEnd> last = log.LastStage();
  // The stage was reached, and the one behind it never began.
  if (last && AdviceFor(last->stage, last->code).decision == Decision::kWaitForEnd) {
    last->code.reset();
  }
  return {Progress::kEnded, last.value_or(EndByVersion(mode, product_folder))};
}

}  // namespace nimba_hub
