#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
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

// Which lines of two texts belong together: the longest sequence that both have.
class CAlignment {
 public:
  CAlignment(const GoldenLines& expected, const GoldenLines& actual)
      : expected_(expected), actual_(actual) {
    const std::size_t columns = actual.size() + 1;
    common_.assign((expected.size() + 1) * columns, 0);
    for (std::size_t row = expected.size(); row-- > 0;) {
      for (std::size_t column = actual.size(); column-- > 0;) {
        At(row, column) = expected[row] == actual[column]
                              ? At(row + 1, column + 1) + 1
                              : std::max(At(row + 1, column), At(row, column + 1));
      }
    }
  }

  // Both texts, each line with its mark.
  [[nodiscard]] std::vector<std::pair<char, std::string>> Marked() {
    std::vector<std::pair<char, std::string>> marked;
    const auto add = [&](char mark, std::size_t index, const std::string& line) {
      marked.emplace_back(mark, std::to_string(index + 1) + ": " + line);
    };
    std::size_t row = 0;
    std::size_t column = 0;
    while (row < expected_.size() || column < actual_.size()) {
      const bool has_both = row < expected_.size() && column < actual_.size();
      if (has_both && expected_[row] == actual_[column]) {
        add(' ', row, expected_[row]);
        ++row;
        ++column;
      } else if (column == actual_.size() ||
                 (has_both && At(row + 1, column) >= At(row, column + 1))) {
        add('-', row, expected_[row]);
        ++row;
      } else {
        add('+', column, actual_[column]);
        ++column;
      }
    }
    return marked;
  }

 private:
  std::size_t& At(std::size_t row, std::size_t column) {
    return common_[row * (actual_.size() + 1) + column];
  }

  const GoldenLines& expected_;
  const GoldenLines& actual_;
  // How many lines the rests of both texts have in common.
  std::vector<std::size_t> common_;
};

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
  // The parameter of a test is part of its name.
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
  if (expected == actual) {
    return {};
  }
  constexpr std::size_t kAround = 2;
  const std::vector<std::pair<char, std::string>> marked = CAlignment(expected, actual).Marked();
  std::string description;
  bool is_gap_shown = false;
  for (std::size_t index = 0; index < marked.size(); ++index) {
    const auto begin =
        marked.begin() + static_cast<std::ptrdiff_t>(index - std::min(index, kAround));
    const auto end =
        marked.begin() + static_cast<std::ptrdiff_t>(std::min(index + kAround + 1, marked.size()));
    const bool is_near =
        std::any_of(begin, end, [](const auto& line) { return line.first != ' '; });
    if (is_near) {
      description += marked[index].first + (" " + marked[index].second) + "\n";
    } else if (!is_gap_shown) {
      description += "  ...\n";
    }
    is_gap_shown = !is_near;
  }
  return description;
}

}  // namespace nhupdate_test
