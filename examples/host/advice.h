#pragma once

// What the host does about each exit code of the updater: docs/calling.md as a table.

#include <optional>

#include "update_program.h"

namespace nimba_hub {

enum class Decision {
  kAskLater,    // nothing to tell; check again at the usual time
  kOffer,       // offer the update to the user
  kWaitForEnd,  // the next stage has been started: the end is known from that
  kDone,        // start the product, which is the new one
  kAnotherDay,  // tell the user; the product is the old one and is offered the update again
  kTryAgain,    // likewise, but offer to run `again` at once
  kFinish,      // the product is half replaced: offer to run `again`; don't start it before
  kReinstall,   // tell the user that the product has to be installed anew
};

struct Advice {
  Decision decision = Decision::kAskLater;
  Mode again = Mode::kUpdate;
  // For the user, in one sentence or two. Where the updater has shown a box of its own, this says
  // only what it means.
  const wchar_t* text = L"";
};

// About the code with which a stage has ended; none: it was broken off and has no result.
[[nodiscard]] Advice AdviceFor(Mode stage, std::optional<DWORD> code);

}  // namespace nimba_hub
