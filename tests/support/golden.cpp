#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "base/existence.h"
#include "base/strings.h"
#include "base/windows.h"
#include "tests/support/fence.h"
#include "tests/support/files.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

const testing::TestInfo& RunningTest() {
  return *testing::UnitTest::GetInstance()->current_test_info();
}

GoldenLines LinesOf(const std::string& text) {
  GoldenLines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    lines.push_back(line);
  }
  return lines;
}

void Compare(const GoldenLines& lines, const std::string& part) {
  const std::wstring path = GoldenPath(part);
  const std::string shown_path = ToUtf8(path);
  if (RewriteGolden(path, lines)) {
    GTEST_SKIP() << shown_path << " is written afresh.";
  }
  const char* const source = RunningTest().file();
  const int source_line = RunningTest().line();
  const std::optional<GoldenLines> expected = ReadGolden(path);
  if (!expected) {
    ADD_FAILURE_AT(source, source_line)
        << "There is no " << shown_path << "; tools/golden writes it. This came:\n"
        << DescribeDifference({}, lines);
    return;
  }
  const std::string difference = DescribeDifference(*expected, lines);
  if (!difference.empty()) {
    ADD_FAILURE_AT(source, source_line)
        << "Not as in " << shown_path << " (- expected there, + came):\n"
        << difference;
  }
}

}  // namespace

void ExpectGolden(const std::vector<std::wstring>& lines, const std::string& part) {
  GoldenLines utf8;
  std::transform(lines.begin(), lines.end(), std::back_inserter(utf8), ToUtf8);
  Compare(utf8, part);
}

void ExpectGolden(const std::string& text, const std::string& part) {
  Compare(LinesOf(text), part);
}

std::wstring GoldenPath(const std::string& part) {
  std::wstring source = ToWide(RunningTest().file());
  nhupdate::ReplaceAll(source, L"\\", L"/");
  // Some compilers name the source by its whole path.
  source.erase(0, source.rfind(L"tests/"));
  const std::size_t folder_end = source.rfind(L'/') + 1;

  std::wstring name = ToWide(RunningTest().test_suite_name() + std::string(".") +
                             RunningTest().name() + (part.empty() ? "" : "." + part));
  // The name of a test with a parameter contains a slash.
  nhupdate::ReplaceAll(name, L"/", L".");
  return source.substr(0, folder_end) + L"golden/" + name + L".txt";
}

std::optional<GoldenLines> ReadGolden(const std::wstring& path) {
  const std::wstring copy = TestProgramFolder() + L"\\golden\\" + path;
  return nhupdate::Exists(copy) ? std::optional(LinesOf(ReadFileBytes(copy))) : std::nullopt;
}

bool RewriteGolden(const std::wstring& path, const GoldenLines& lines) {
  std::array<wchar_t, 4096> folder = {};
  if (::GetEnvironmentVariableW(kGoldenFolderVariable, folder.data(),
                                static_cast<DWORD>(folder.size())) == 0) {
    return false;
  }
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  std::wstring file = folder.data() + (L"\\" + path);
  nhupdate::ReplaceAll(file, L"/", L"\\");
  const AllowOutside open("golden files are written afresh, where somebody wants them",
                          Machine::kAnybodys);
  WriteFileBytes(file, text);
  return true;
}

std::string DescribeDifference(const GoldenLines& expected, const GoldenLines& actual) {
  return testing::internal::edit_distance::CreateUnifiedDiff(expected, actual);
}

}  // namespace nhupdate_test
