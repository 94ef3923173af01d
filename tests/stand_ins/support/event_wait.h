#pragma once

// How a test and a stand-in that it started itself agree: the stand-in sets one event when it is
// ready and ends when the other one is set.

#include <string>

namespace nhupdate_stand_in {

// Sets the event named `name` + ".ready", then waits until the event `name` + ".end" is set or the
// time is over. Returns false when there are no such events.
bool BeReadyAndWait(const std::wstring& name, unsigned long time_limit_ms);

}  // namespace nhupdate_stand_in
