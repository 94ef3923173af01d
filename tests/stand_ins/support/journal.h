#pragma once

// Journals that several stand-ins write at the same time: files of tab-separated UTF-8 lines, one
// for each thing that happened.

#include <cstddef>
#include <string>
#include <vector>

namespace nhupdate_stand_in {

// The most units that a path can have, and a variable of the environment.
inline constexpr std::size_t kLongestPath = 32767;

// Appends one line, the id of this process before the fields, to the file that the environment
// variable names; nothing when it names none.
// Line ends and tabs within a field become the pictures of them, U+240A, U+240D and U+2409.
void AppendToJournal(const wchar_t* path_variable, const std::vector<std::wstring>& fields);

}  // namespace nhupdate_stand_in
