#pragma once

// The one kind of window that the program shows.

#include <string>

namespace nhupdate {

// Shows a message box with an error sign above all other windows and waits until it is closed.
// There is nothing to choose in it. Without a desktop it returns at once.
void ShowErrorBox(const std::wstring& title, const std::wstring& text);

}  // namespace nhupdate
