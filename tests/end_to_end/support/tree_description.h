#pragma once

// Files and folders as text that can be compared whole.

#include <string>

namespace nhupdate_test {

// The bytes themselves when there are few of them, with line ends as \r and \n, else how many they
// are and their hash.
[[nodiscard]] std::string DescribeContent(const std::string& bytes);

// The content of a file; "program VERSION" for one that CInstalledHub::PutManager has put.
[[nodiscard]] std::string DescribeFile(const std::wstring& path);

// All files and folders below the folder, one line each: "path\" for a folder, "path = content" for
// a file. Only the log stands without its content: that has times and process ids, and a header for
// every process that ever wrote it.
[[nodiscard]] std::string DescribeTree(const std::wstring& folder);

// How a folder that PutManager has filled shows in the description of a tree, each line behind the
// prefix.
[[nodiscard]] std::string DescribeManager(const std::string& prefix, const std::string& version);

}  // namespace nhupdate_test
