#pragma once

#include <string>

namespace nhupdate_test {

// Copies a file over another one, with the folders above it; a test failure when that can't be
// done.
void CopyOver(const std::wstring& source, const std::wstring& target);

// Copies what is in the folder, likewise.
void CopyTree(const std::wstring& source, const std::wstring& target);

}  // namespace nhupdate_test
