#pragma once

// The shipped language files, as the tests see them: a copy beside the test executable.

#include <string>
#include <vector>

namespace nhupdate_test {

// The folder of the copy.
[[nodiscard]] std::wstring ShippedConfigFolder();

// The names of all string files in it.
[[nodiscard]] std::vector<std::wstring> ShippedStringFiles();

// Copies everything in it into `folder`, which is created.
void CopyShippedConfigTo(const std::wstring& folder);

}  // namespace nhupdate_test
