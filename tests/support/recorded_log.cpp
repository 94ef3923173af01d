#include "tests/support/recorded_log.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/placeholders.h"

namespace nhupdate_test {

namespace {

// Of "level|tag|text".
std::wstring WithoutTag(const std::wstring& record) {
  const std::size_t tag = record.find(L'|');
  return record.substr(0, tag) + record.substr(record.find(L'|', tag + 1));
}

}  // namespace

RecordedLog::RecordedLog(std::wstring root) : root_(std::move(root)) {
  library_.on_event = [this](const std::string& event, const std::wstring& details) {
    if (event == "WriteLog") {
      records_.push_back(WithoutTag(details));
    }
  };
  EXPECT_EQ(center_.StartLog(L"(in memory)", L"", L""), 1);
}

std::vector<std::wstring> RecordedLog::Records() const {
  std::vector<std::wstring> records = records_;
  for (std::wstring& record : records) {
    record = WithPlaceholders(std::move(record), root_, L"");
  }
  return records;
}

}  // namespace nhupdate_test
