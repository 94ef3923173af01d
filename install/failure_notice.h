#pragma once

// What the user is told when something fails. The boxes only inform: nothing is asked and nothing
// is tried again after them.

#include <string>

#include "text/string_table.h"

namespace nhupdate {

// Shows an error box with the text of the key and waits until it is closed.
void TellFailure(const StringTable& strings, const wchar_t* key);

// The same with the path that it was about on a line of its own.
void TellFailure(const StringTable& strings, const wchar_t* key, const std::wstring& path);

}  // namespace nhupdate
