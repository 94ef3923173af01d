#include "advice.h"

#include <array>

namespace nimba_hub {

namespace {

constexpr wchar_t kNotUpdated[] =
    L"Nimba Hub has not been updated. It works as before and will offer the update again.";
constexpr wchar_t kNotStarted[] = L"The update could not be started. Nimba Hub works as before.";
constexpr wchar_t kNoRights[] =
    L"The update needs the rights of an administrator. Nimba Hub works as before.";
constexpr wchar_t kWrongRelease[] =
    L"The update is not complete. Nimba Hub works as before and will look for it again.";
constexpr wchar_t kStopped[] = L"The update was stopped. Nimba Hub works as before.";
constexpr wchar_t kHalfDone[] =
    L"The update is not finished, and Nimba Hub can't be used until it is. Please close everything "
    L"that belongs to Nimba Hub.";
constexpr wchar_t kIncomplete[] = L"Nimba Hub is not complete any more. Please install it again.";

struct Row {
  Mode stage;
  DWORD code;
  Advice advice;
};

constexpr Advice Quiet(Decision decision) {
  return {decision, Mode::kUpdate, L""};
}

constexpr Advice AnotherDay(const wchar_t* text) {
  return {Decision::kAnotherDay, Mode::kUpdate, text};
}

constexpr Advice TryAgain(Mode again, const wchar_t* text) {
  return {Decision::kTryAgain, again, text};
}

constexpr Advice kFinish = {Decision::kFinish, Mode::kFinalUpdate, kHalfDone};
constexpr Advice kReinstall = {Decision::kReinstall, Mode::kUpdate, kIncomplete};

constexpr std::array kRows = {
    // Ended by another copy: an update is going on, or was.
    Row{Mode::kDownload, 0, Quiet(Decision::kAskLater)},
    Row{Mode::kDownload, 1, Quiet(Decision::kAskLater)},
    Row{Mode::kDownload, 11, Quiet(Decision::kAskLater)},
    Row{Mode::kDownload, 12, Quiet(Decision::kOffer)},
    Row{Mode::kDownload, 13, Quiet(Decision::kAskLater)},
    Row{Mode::kDownload, 14, kReinstall},

    Row{Mode::kUpdate, 0, Quiet(Decision::kWaitForEnd)},
    Row{Mode::kUpdate, 1, TryAgain(Mode::kUpdate, kNotStarted)},
    // Consent was given, but the rights didn't come with it.
    Row{Mode::kUpdate, 10, AnotherDay(kNoRights)},
    Row{Mode::kUpdate, 13, AnotherDay(kNotUpdated)},
    // Without the updater, which can also be there and not start. The next check tells which it is:
    // its 14 means that the updater is missing.
    Row{Mode::kUpdate, 14, TryAgain(Mode::kUpdate, kNotStarted)},
    Row{Mode::kUpdate, 15, AnotherDay(kWrongRelease)},
    Row{Mode::kUpdate, 16, TryAgain(Mode::kUpdate, kNotStarted)},

    Row{Mode::kSelfUpdate, 0, Quiet(Decision::kWaitForEnd)},
    Row{Mode::kSelfUpdate, 10, TryAgain(Mode::kUpdate, kNoRights)},
    Row{Mode::kSelfUpdate, 15, kReinstall},
    // The product is the old one, the updater's program may be half replaced.
    Row{Mode::kSelfUpdate, 16, TryAgain(Mode::kUpdate, kNotUpdated)},

    Row{Mode::kFinalUpdate, 0, Quiet(Decision::kDone)},
    Row{Mode::kFinalUpdate, 1, TryAgain(Mode::kFinalUpdate, kNotUpdated)},
    Row{Mode::kFinalUpdate, 2, kFinish},
    Row{Mode::kFinalUpdate, 10, TryAgain(Mode::kFinalUpdate, kNoRights)},
};

// Crashed, out of memory, or ended from outside: from here on nothing is known but how far it came.
Advice BrokenOff(Mode stage) {
  switch (stage) {
    case Mode::kDownload:
      return Quiet(Decision::kAskLater);
    case Mode::kUpdate:
      return TryAgain(Mode::kUpdate, kStopped);
    case Mode::kSelfUpdate:
      // The staged copy, since the installed one may be half replaced; it goes on by itself.
      return TryAgain(Mode::kSelfUpdate, kStopped);
    case Mode::kFinalUpdate:
      return kFinish;
  }
  return kReinstall;
}

}  // namespace

Advice AdviceFor(Mode stage, std::optional<DWORD> code) {
  for (const Row& row : kRows) {
    if (row.stage == stage && code == row.code) {
      return row.advice;
    }
  }
  return BrokenOff(stage);
}

}  // namespace nimba_hub
