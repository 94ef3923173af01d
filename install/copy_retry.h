#pragma once

// Files that are still in use are usually free again a moment later, so copies are tried again.

namespace nhupdate {

inline constexpr unsigned long kRetryDelayMs = 3000;
inline constexpr int kCopyAttempts = 10;  // at most 30 s in all

}  // namespace nhupdate
