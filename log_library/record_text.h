#pragma once

// The text of a record in the log file, UTF-8 without a byte order mark:
//
//   2026-11-20T14:03:05.123+02:00 [4711:815] INFO  [tag] text
//       further line of the text
//
// A line that begins with a blank belongs to the record above it; every other line begins one. No
// text can forge a line: whatever ends a line in it is followed by four blanks, and every other
// control character is replaced.
//
//   carriage return and line feed, together or alone    a line end
//   tab                                                 stays
//   other control characters below U+0020, and U+007F   their pictures (U+2400 + code, U+2421)
//   U+0080 to U+009F, U+2028, U+2029                    U+FFFD; some programs end a line there
//   half of a surrogate pair without the other          U+FFFD
//
// In a tag line ends and tabs are replaced too, and "[" and "]" become "(" and ")".

#include <string>
#include <string_view>

#include "base/windows.h"
#include "log_library/record_time.h"

namespace nhupdate {

struct RecordOrigin {
  RecordTime time;
  DWORD process_id = 0;
  DWORD thread_id = 0;
};

// The whole record with its line end.
[[nodiscard]] std::string FormatRecord(const RecordOrigin& origin, int level, std::wstring_view tag,
                                       std::wstring_view text);

}  // namespace nhupdate
