#pragma once

// Files and folders for the tests. Paths are wide texts as in the program; contents are bytes.

#include <string>
#include <vector>

namespace nhupdate_test {

// Creates the folder and what is missing above it; a test failure when it can't.
void CreateFolders(const std::wstring& folder);

// Writes the file, with the folders above it; a test failure when it can't.
void WriteFileBytes(const std::wstring& path, const std::string& bytes);

// Writes behind what is in the file, which others may have open; a test failure when it can't.
// Makes the file when there is none.
void AppendFileBytes(const std::wstring& path, const std::string& bytes);

// The content of the file; a test failure and nothing when it can't be read whole.
[[nodiscard]] std::string ReadFileBytes(const std::wstring& path);

// What is in the folder at any depth, relative to it and sorted; folders end in a backslash. Links
// are listed but not walked through. Nothing when there is no such folder.
[[nodiscard]] std::vector<std::wstring> ListTree(const std::wstring& folder);

// Deletes the folder and all in it, read-only files too, but nothing behind a link. What can't be
// deleted stays.
void RemoveTree(const std::wstring& folder);

// A path below the folder that Windows by default takes for one that isn't there
// (short_path_policy.h).
[[nodiscard]] std::wstring LongPathBelow(const std::wstring& folder);

// The folder that holds this test executable and the stand-ins.
[[nodiscard]] std::wstring TestProgramFolder();

}  // namespace nhupdate_test
