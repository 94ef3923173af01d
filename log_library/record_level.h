#pragma once

// The levels that have a name. A record may carry any other number.

namespace nhupdate {

inline constexpr int kDebugLevel = 1;
inline constexpr int kInformationLevel = 2;
inline constexpr int kWarningLevel = 3;
inline constexpr int kErrorLevel = 4;

}  // namespace nhupdate
