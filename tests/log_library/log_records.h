#pragma once

// Reads log files back into records, and takes no line for granted: one that is neither a record's
// first line nor a further one fails the test.

#include <string>
#include <vector>

namespace nhupdate_test {

struct LogRecord {
  std::string time;
  unsigned long process_id = 0;
  unsigned long thread_id = 0;
  std::string level;
  std::string tag;
  std::string text;  // UTF-8, its lines separated by "\n"
};

[[nodiscard]] std::vector<LogRecord> ParseRecords(const std::string& bytes);

// The records of one file.
[[nodiscard]] std::vector<LogRecord> ReadRecords(const std::wstring& file);

// The texts of the file's records but for the library's own.
[[nodiscard]] std::vector<std::string> ReadTexts(const std::wstring& file);

// What stands before the text in a record of an earlier run, or of another process.
inline constexpr char kEarlierHead[] = "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] ";

// Such a record.
inline const std::string kEarlier = std::string(kEarlierHead) + "earlier\n";

}  // namespace nhupdate_test
