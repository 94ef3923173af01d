#pragma once

// Whether this process may change what belongs to the whole machine.

namespace nhupdate {

// True when the process runs with an elevated token. Any failure to find out counts as no.
[[nodiscard]] bool IsProcessElevated();

}  // namespace nhupdate
