#pragma once

// What Version.txt of a product's folder, or of a staged release, says.

#include <filesystem>
#include <string>

namespace nimba_hub {

// Empty when there is none.
[[nodiscard]] std::wstring VersionIn(const std::filesystem::path& folder);

}  // namespace nimba_hub
