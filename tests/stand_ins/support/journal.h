#pragma once

// Journals that several stand-ins write at the same time: files of tab-separated UTF-8 lines, one
// for each thing that happened.

#include <string>
#include <vector>

namespace nhupdate_stand_in {

// Appends one line, the id of this process before the fields, to the file that the environment
// variable names; nothing when it names none.
// Line ends and tabs within a field become the pictures of them, U+240A, U+240D and U+2409.
void AppendToJournal(const wchar_t* path_variable, const std::vector<std::wstring>& fields);

// The value of the environment variable; empty when there is none.
[[nodiscard]] std::wstring EnvironmentVariable(const wchar_t* name);

// The folder that holds this executable.
[[nodiscard]] std::wstring OwnFolder();

// Writes down how this process was started: its executable's path, its working folder, its show
// state ("-" without one), the id and file name of its parent, and its whole command line. The
// journal's path is in the environment variable NHUPDATE_CHILD_JOURNAL.
void RecordOwnStart();

}  // namespace nhupdate_stand_in
