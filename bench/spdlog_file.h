#pragma once

// A file that the rival library writes, by itself and for this process alone. Each record is handed
// to Windows before the call returns.

#include <memory>
#include <string>

namespace nhupdate_bench {

class SpdlogFile {
 public:
  explicit SpdlogFile(const std::wstring& path);
  ~SpdlogFile();
  SpdlogFile(const SpdlogFile&) = delete;
  SpdlogFile& operator=(const SpdlogFile&) = delete;

  void Write(const std::wstring& text) const;

 private:
  struct Logger;
  std::unique_ptr<Logger> logger_;
};

}  // namespace nhupdate_bench
