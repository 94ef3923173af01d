#include "log/log.h"

#include "log/log_center.h"

namespace nhupdate {

namespace {

constexpr wchar_t kLogTag[] = L"NHUpdateManager";

}  // namespace

void CLog::WriteText(LogLevel level, const std::wstring& message) const {
  log_center_.WriteRecord(static_cast<int>(level), kLogTag, message);
}

}  // namespace nhupdate
