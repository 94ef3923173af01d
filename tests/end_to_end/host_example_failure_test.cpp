// The host of examples/host when something is in the way of its update.

#include <atomic>

#include "base/unique_handle.h"
#include "tests/end_to_end/support/host_example.h"
#include "tests/end_to_end/support/other_copy.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr wchar_t kHelperWindow[] = L"Corvane.NimbaHub.Update";
constexpr char kHalfDone[] = "The update is not finished";

DWORD OwnerOf(HWND window) {
  DWORD id = 0;
  ::GetWindowThreadProcessId(window, &id);
  return id;
}

class HinderedHostExampleTest : public HostExampleTest {
 protected:
  // The process of a stage that has begun; 0 when it hasn't.
  [[nodiscard]] DWORD StageNamed(const std::wstring& name) const {
    for (const HubLogRecord& record : ReadLog(hub_)) {
      if (record.text == L"2|Function : " + name) {
        return record.process_id;
      }
    }
    return 0;
  }
};

TEST_F(HinderedHostExampleTest, TellsTheUserThatTheUpdateHasFailed) {
  hub_.Script(L"NIMBAHUB", {.exit_code = -5});
  DWORD first = 0;
  const auto close_restarted = [&] {
    const DWORD owner = OwnerOf(::FindWindowW(kProductWindow, L"Nimba Hub 1.0.0"));
    first = first == 0 ? owner : first;
    if (owner != 0 && owner != first) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_restarted);

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 13));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr(kCommonError),
                                        HasSubstr("Nimba Hub has not been updated.")));
  EXPECT_TRUE(close_product_.IsDone());
}

TEST_F(HinderedHostExampleTest, FinishesAnUpdateThatWasHindered) {
  HeldFile held(hub_.Base() + L"\\Version.txt", FILE_SHARE_READ);
  const auto release_and_retry = [&](const WatchedBox& box) {
    if (box.text.find(kHalfDone) == std::string::npos) {
      return IDOK;
    }
    held.Release();
    return IDRETRY;
  };

  const ProgramRun run = RunHost(std::ref(close_new_product_), release_and_retry);

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 2, 0));
  EXPECT_THAT(TextsOf(run),
              ElementsAre(HasSubstr(kOffer), HasSubstr("Version.txt"), HasSubstr(kHalfDone)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HinderedHostExampleTest, DoesNotStartAProductThatIsHalfReplaced) {
  // The first in the folder, so that the product could still be started.
  const std::wstring file = hub_.Base() + L"\\1.txt";
  WriteFileBytes(file, "held");
  const HeldFile held(file, FILE_SHARE_READ);

  const ProgramRun run = RunHost({}, [&](const WatchedBox& box) {
    return box.text.find(kHalfDone) == std::string::npos ? IDOK : IDCANCEL;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 2));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("1.txt"), HasSubstr(kHalfDone),
                                        HasSubstr("Please install it again.")));
}

TEST_F(HinderedHostExampleTest, GoesOnWithAnUpdateThatWasBrokenOff) {
  bool is_ended = false;
  const auto break_off = [&] {
    const DWORD id = is_ended ? 0 : StageNamed(L"Self Update");
    if (id != 0) {
      const nhupdate::UniqueKernelHandle process(::OpenProcess(PROCESS_TERMINATE, FALSE, id));
      is_ended = ::TerminateProcess(process.Get(), kEndedByTest);
    }
    close_new_product_();
  };

  const ProgramRun run = RunHost(break_off, [&](const WatchedBox& box) {
    return box.text.find("The update was stopped.") == std::string::npos ? IDOK : IDRETRY;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, kEndedByTest, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("The update was stopped.")));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HinderedHostExampleTest, DoesNotUpdateUnderSomebodyElsesHands) {
  const COtherCopy other_session(hub_.Scratch() + L"\\NHHub.exe");
  std::atomic<bool> is_told = false;
  const auto close_when_told = [&] {
    if (is_told) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_when_told, [&](const WatchedBox& box) {
    is_told = box.text.find("another user") != std::string::npos;
    return IDOK;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(12));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("another user")));
}

TEST_F(HinderedHostExampleTest, StopsWaitingWhenTheUserClosesTheWindow) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});
  CClosing close_helper(kHelperWindow);
  const auto close_in_update = [&] {
    if (LogHolds(hub_, "] Launch updater success for update.")) {
      close_helper();
    }
  };

  const ProgramRun run = RunHost(close_in_update);

  EXPECT_TRUE(close_helper.IsDone());
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("still going on")));
}

TEST_F(HinderedHostExampleTest, StopsWaitingAfterTheLongestTime) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});

  const ProgramRun run = RunHost({}, {}, L" --longest-wait 1");

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer), HasSubstr("still going on")));
}

TEST_F(HinderedHostExampleTest, TellsTheUserThatTheUpdaterIsMissing) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());
  std::atomic<bool> is_told = false;
  const auto close_when_told = [&] {
    if (is_told) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_when_told, [&](const WatchedBox&) {
    is_told = true;
    return IDOK;
  });

  EXPECT_THAT(CodesOf(run), ElementsAre(14));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr("Please install it again.")));
}

}  // namespace
}  // namespace nhupdate_test
