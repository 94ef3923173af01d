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

// All files of a log folder one after the other: the rotated ones by their number, then the
// current one.
[[nodiscard]] std::vector<std::wstring> LogFilesInOrder(const std::wstring& folder);

}  // namespace nhupdate_test
