#include "app/run_mode.h"

#include <algorithm>

#include "base/strings.h"

namespace nhupdate {

namespace {

struct ModeSwitch {
  RunMode mode;
  const wchar_t* with_hyphen;
  const wchar_t* with_slash;
};

// In order of precedence.
constexpr ModeSwitch kModeSwitches[] = {
    {RunMode::kDownload, L"-download", L"/download"},
    {RunMode::kInstall, L"-install", L"/install"},
    {RunMode::kUpdate, L"-update", L"/update"},
    {RunMode::kSelfUpdate, L"-self_update", L"/self_update"},
    {RunMode::kFinalUpdate, L"-final_update", L"/final_update"},
};

}  // namespace

RunMode ChooseRunMode(const std::vector<std::wstring>& arguments) {
  for (const ModeSwitch& candidate : kModeSwitches) {
    const bool is_given =
        std::any_of(arguments.begin(), arguments.end(), [&](const std::wstring& argument) {
          return EqualsIgnoringCase(argument, candidate.with_hyphen) ||
                 EqualsIgnoringCase(argument, candidate.with_slash);
        });
    if (is_given) {
      return candidate.mode;
    }
  }
  return RunMode::kNone;
}

}  // namespace nhupdate
