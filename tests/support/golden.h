#pragma once

// Golden files: the text that a whole run should write, with {placeholders}, is in a file beside
// the test that owns it, and is compared whole:
//
//   tests/update/update_test.cpp    TEST_F(UpdateTest, FailsWithoutUpdater)
//   tests/update/golden/UpdateTest.FailsWithoutUpdater.txt
//
// tools/golden --diff shows what has become different, tools/golden rewrites the files.

#include <optional>
#include <string>
#include <vector>

namespace nhupdate_test {

// Compares the lines with the running test's golden file; a test failure that shows the lines that
// differ when they aren't the same, or when there is no such file. A test with several golden files
// tells them apart by `part`, which follows the test's name.
void ExpectGolden(const std::vector<std::wstring>& lines, const std::string& part = {});

// The same for a text of lines in UTF-8, each with its line end.
void ExpectGolden(const std::string& text, const std::string& part = {});

// When the environment variable names a folder, the lines are written there instead of being
// compared, as tests/.../golden/NAME.txt, and the test counts as skipped: it has checked nothing.
inline constexpr wchar_t kGoldenFolderVariable[] = L"NHUPDATE_GOLDEN_FOLDER";

// The parts of ExpectGolden, for its own tests.

using GoldenLines = std::vector<std::string>;

// The path of the running test's golden file, relative to the root of the sources.
[[nodiscard]] std::wstring GoldenPath(const std::string& part);

// The lines of the file, from its copy beside the test executable; nothing when there is none.
[[nodiscard]] std::optional<GoldenLines> ReadGolden(const std::wstring& path);

// Writes the lines below the folder that the environment variable names; false when it isn't set.
[[nodiscard]] bool RewriteGolden(const std::wstring& path, const GoldenLines& lines);

// As GoogleTest shows where two texts differ: "-" before what is only expected, "+" before what
// only came, and a few of the lines around. Empty when both are the same.
[[nodiscard]] std::string DescribeDifference(const GoldenLines& expected,
                                             const GoldenLines& actual);

}  // namespace nhupdate_test
