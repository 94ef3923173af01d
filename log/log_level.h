#pragma once

// The levels that the program gives its records. The numbers are part of the log library's
// interface; how they are shown is the library's business.

namespace nhupdate {

enum class LogLevel : int {
  kInformation = 2,
  kWarning = 3,  // a failed attempt that will be repeated
  kError = 4,
};

}  // namespace nhupdate
