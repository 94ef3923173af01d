#pragma once

// Folders that are usually there already.

#include <string>

namespace nhupdate {

// Makes the folder, whose parent must exist, with the rights that it inherits. Returns whether it,
// or something else of its name, is there now. Why it could not be made isn't told: what is then
// done in the folder fails with an error of its own.
bool MakeFolder(const std::wstring& folder);

}  // namespace nhupdate
