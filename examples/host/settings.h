#pragma once

// What the host can be told on its command line. Each setting has the value that a product would be
// shipped with.

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nimba_hub {

struct Settings {
  // The product's executable; its folder is the product's. By default the running program.
  std::filesystem::path program;
  // From the product's start to its first check for an update.
  std::chrono::seconds first_check = std::chrono::minutes(1);
  // From one check to the next. Each check that finds something starts a download and ends the one
  // that is running, so this must be long enough for a download.
  std::chrono::seconds check_every = std::chrono::hours(4);
  // From an offer, whatever has become of it, to the next check.
  std::chrono::seconds offer_again = std::chrono::hours(24);
  // After this time the helper no longer waits for the end of an update. It ends nothing: the
  // updater knows no time limit, and a slow line is no fault.
  std::chrono::seconds longest_wait = std::chrono::hours(12);
  // Whether this copy of the program is the helper, which lives outside of the product's folder.
  bool is_helper = false;
};

// The settings on a command line, without the program's own name; none when it can't be understood.
[[nodiscard]] std::optional<Settings> ReadSettings(const std::vector<std::wstring>& arguments);

// The other way round: the arguments for another copy of the program with these settings.
[[nodiscard]] std::wstring ToArguments(const Settings& settings);

// The running executable.
[[nodiscard]] std::filesystem::path OwnProgram();

}  // namespace nimba_hub
