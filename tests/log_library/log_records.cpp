#include "tests/log_library/log_records.h"

#include <gtest/gtest.h>

#include <map>

#include "log_library/rotated_files.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

// Taken apart by hand: 40,000 lines are too many for std::regex. True when `text` begins with
// what `pattern` says, in which '0' stands for any digit.
bool BeginsLike(const std::string& text, const std::string& pattern) {
  if (text.size() < pattern.size()) {
    return false;
  }
  for (std::size_t index = 0; index < pattern.size(); ++index) {
    const bool is_digit = text[index] >= '0' && text[index] <= '9';
    if (pattern[index] == '0' ? !is_digit : text[index] != pattern[index]) {
      return false;
    }
  }
  return true;
}

// The part of `line` from `position` up to `end`, behind which the position is moved. False when
// there is no such end.
bool Take(const std::string& line, const std::string& end, std::size_t& position,
          std::string& part) {
  const std::size_t found = line.find(end, position);
  if (found == std::string::npos) {
    return false;
  }
  part = line.substr(position, found - position);
  position = found + end.size();
  return true;
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool ParseFirstLine(const std::string& line, LogRecord& record) {
  const bool has_time = BeginsLike(line, "0000-00-00T00:00:00.000+00:00 [") ||
                        BeginsLike(line, "0000-00-00T00:00:00.000-00:00 [");
  std::size_t position = 0;
  std::string process_id;
  std::string thread_id;
  if (!has_time || !Take(line, " [", position, record.time) ||
      !Take(line, ":", position, process_id) || !Take(line, "] ", position, thread_id) ||
      !Take(line, " [", position, record.level) || !Take(line, "] ", position, record.tag) ||
      !IsNumber(process_id) || !IsNumber(thread_id) || record.level.size() < 4) {
    return false;
  }
  record.level.resize(record.level.find_last_not_of(' ') + 1);
  record.process_id = std::stoul(process_id);
  record.thread_id = std::stoul(thread_id);
  record.text = line.substr(position);
  return true;
}

}  // namespace

std::vector<LogRecord> ParseRecords(const std::string& bytes) {
  std::vector<LogRecord> records;
  std::size_t position = 0;
  std::string line;
  while (Take(bytes, "\n", position, line)) {
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

std::vector<std::wstring> LogFilesInOrder(const std::wstring& folder) {
  std::map<unsigned, std::wstring> rotated;
  for (const auto& file : nhupdate::ListRotatedFiles(folder)) {
    rotated[file.number] = folder + L"\\" + file.name;
  }
  std::vector<std::wstring> files;
  for (const auto& [number, file] : rotated) {
    files.push_back(file);
  }
  files.push_back(folder + L"\\NHUpdateManager.log");
  return files;
}

}  // namespace nhupdate_test
