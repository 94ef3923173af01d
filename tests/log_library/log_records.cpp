#include "tests/log_library/log_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

// Taken apart by hand: so many lines are too many for std::regex.
bool ParseFirstLine(const std::string& line, LogRecord& record) {
  constexpr std::string_view kTime = "0000-00-00T00:00:00.000+00:00";
  record.time = line.substr(0, kTime.size());
  std::string form = record.time;
  std::replace_if(
      form.begin(), form.end(), [](char unit) { return unit >= '0' && unit <= '9'; }, '0');
  if (form != kTime && form != "0000-00-00T00:00:00.000-00:00") {
    return false;
  }
  std::array<char, 16> level = {};
  int tag = 0;
  std::sscanf(line.c_str() + kTime.size(), " [%lu:%lu] %15s [%n", &record.process_id,
              &record.thread_id, level.data(), &tag);
  const std::size_t tag_begin = kTime.size() + static_cast<std::size_t>(tag);
  const std::size_t tag_end = line.find("] ", tag_begin);
  if (tag == 0 || tag_end == std::string::npos) {
    return false;
  }
  record.level = level.data();
  record.tag = line.substr(tag_begin, tag_end - tag_begin);
  record.text = line.substr(tag_end + 2);
  return true;
}

}  // namespace

std::vector<LogRecord> ParseRecords(const std::string& bytes) {
  std::vector<LogRecord> records;
  std::size_t position = 0;
  for (std::size_t end = bytes.find('\n'); end != std::string::npos;
       end = bytes.find('\n', position)) {
    const std::string line = bytes.substr(position, end - position);
    position = end + 1;
    LogRecord record;
    if (line.starts_with("    ") && !records.empty()) {
      records.back().text += "\n" + line.substr(4);
    } else if (ParseFirstLine(line, record)) {
      records.push_back(record);
    } else {
      ADD_FAILURE() << "No line of a log: " << line.substr(0, 200);
    }
  }
  EXPECT_EQ(position, bytes.size()) << "The last line has no end.";
  return records;
}

std::vector<LogRecord> ReadRecords(const std::wstring& file) {
  return ParseRecords(ReadFileBytes(file));
}

std::vector<std::string> ReadTexts(const std::wstring& file) {
  std::vector<std::string> texts;
  for (const LogRecord& record : ReadRecords(file)) {
    if (record.tag != "NSWLogDynamic64U") {
      texts.push_back(record.text);
    }
  }
  return texts;
}

}  // namespace nhupdate_test
