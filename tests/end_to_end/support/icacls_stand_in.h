#pragma once

namespace nhupdate_test {

// Puts the stand-in in the place of the system's ICACLS.exe, where every search finds it, once for
// this process.
void ReplaceIcacls();

}  // namespace nhupdate_test
