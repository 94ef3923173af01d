#pragma once

// A log that has been started and that keeps its records in memory, for what needs a log and
// nothing else of a product: no library is loaded and no file written. There can be one at a time,
// and Windows loads no other library as long as it lives.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "log/log.h"
#include "log/log_center.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/placeholders.h"

namespace nhupdate_test {

class RecordedLog {
 public:
  // The folder, if there is one, shows as {root} in the records.
  explicit RecordedLog(std::wstring root = L"") : root_(std::move(root)) {
    library_.on_event = [this](const std::string& event, const std::wstring& details) {
      if (event == "WriteLog") {
        const std::size_t tag = details.find(L'|');
        records_.push_back(details.substr(0, tag) + details.substr(details.find(L'|', tag + 1)));
      }
    };
    EXPECT_EQ(center_.StartLog(L"(in memory)", L"", L""), 1);
  }

  [[nodiscard]] nhupdate::CLog Log() { return nhupdate::CLog(center_); }

  // What the log is made of.
  [[nodiscard]] nhupdate::CNSWLogCenter& Center() { return center_; }

  // The records since the last ForgetRecords, each as L"level|text", with placeholders
  // (tests/support/placeholders.h).
  [[nodiscard]] std::vector<std::wstring> Records() const {
    std::vector<std::wstring> records = records_;
    for (std::wstring& record : records) {
      record = WithPlaceholders(std::move(record), root_, L"");
    }
    return records;
  }

  void ForgetRecords() { records_.clear(); }

 private:
  std::wstring root_;
  std::vector<std::wstring> records_;
  FakeLogLibrary library_;
  nhupdate::CNSWLogCenter center_;
};

}  // namespace nhupdate_test
