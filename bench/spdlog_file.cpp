#include "bench/spdlog_file.h"

// Its messages are UTF-8 whatever it is given; its files, those of Windows.
#define SPDLOG_WCHAR_TO_UTF8_SUPPORT
#define SPDLOG_WCHAR_FILENAMES
#define SPDLOG_FMT_EXTERNAL
#define FMT_HEADER_ONLY
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

namespace nhupdate_bench {

struct SpdlogFile::Logger {
  explicit Logger(const std::wstring& path)
      : logger("NHUpdateManager", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path)) {
    // What stands before a record of ours, as far as it knows of it.
    logger.set_pattern("%Y-%m-%dT%H:%M:%S.%e%z [%P:%t] %l [%n] %v");
    logger.flush_on(spdlog::level::info);
  }

  spdlog::logger logger;
};

SpdlogFile::SpdlogFile(const std::wstring& path) : logger_(std::make_unique<Logger>(path)) {}

SpdlogFile::~SpdlogFile() = default;

void SpdlogFile::Write(const std::wstring& text) const {
  logger_->logger.info(spdlog::wstring_view_t(text));
}

}  // namespace nhupdate_bench
