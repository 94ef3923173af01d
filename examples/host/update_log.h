#pragma once

// What the updater's log says of an update: which stage it came to, and how that ended.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>

#include "update_program.h"

namespace nimba_hub {

struct StageEnd {
  Mode stage = Mode::kUpdate;
  std::optional<DWORD> code;  // none when the stage was broken off
};

// The folder of the log, the same for every user.
[[nodiscard]] std::filesystem::path LogFolder();

class CUpdateLog {
 public:
  // Remembers how long the log is now: what comes behind that is the update's. Files are known by
  // their identity, for the log may be put aside under another name in the middle of an update.
  explicit CUpdateLog(std::filesystem::path folder);

  // The last stage that has begun since; none when the log has none, which may also mean that it
  // can't be read or written.
  [[nodiscard]] std::optional<StageEnd> LastStage() const;

 private:
  std::filesystem::path folder_;
  std::map<std::uint64_t, std::int64_t> sizes_;
};

}  // namespace nimba_hub
