#include "bench/support/started_log.h"

#include "base/executable_path.h"
#include "base/paths.h"
#include "bench/support/pairs.h"

namespace nhupdate_bench {

StartedLog::StartedLog(const std::wstring& folder) {
  const std::wstring programs = nhupdate::ParentFolder(nhupdate::FindExecutable().path);
  if (center_.StartLog(programs + L"\\NSWLogDynamic64U.dll", L"", folder) != 1) {
    GiveUp("The log doesn't start.");
  }
}

}  // namespace nhupdate_bench
