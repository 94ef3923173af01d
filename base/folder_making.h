#pragma once

// Folders that are usually there already.

#include <string>

namespace nhupdate {

// Makes the folder, whose parent must exist, with the rights that it inherits. Returns whether it,
// or something else of its name, was there then; why it could not be made shows in what needs it.
bool MakeFolder(const std::wstring& folder);

}  // namespace nhupdate
