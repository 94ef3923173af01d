#include "tests/support/golden.h"

#include "tests/support/windows_basics.h"

#include <gtest/gtest-spi.h>

namespace nhupdate_test {
namespace {

// The golden files of these tests are written by hand, so they aren't rewritten with the others.
class CNotRewritten {
 public:
  CNotRewritten() {
    folder_.resize(::GetEnvironmentVariableW(kGoldenFolderVariable, folder_.data(),
                                             static_cast<DWORD>(folder_.size())));
    ::SetEnvironmentVariableW(kGoldenFolderVariable, nullptr);
  }
  ~CNotRewritten() {
    ::SetEnvironmentVariableW(kGoldenFolderVariable, folder_.empty() ? nullptr : folder_.c_str());
  }
  CNotRewritten(const CNotRewritten&) = delete;
  CNotRewritten& operator=(const CNotRewritten&) = delete;

 private:
  std::wstring folder_ = std::wstring(4096, L'\0');
};

class GoldenTest : public testing::Test {
 protected:
  const CNotRewritten not_rewritten_;
};

TEST_F(GoldenTest, IsComparedWhole) {
  ExpectGolden(std::vector<std::wstring>{L"2|Process elevated.", L"2|Gr\u00FCn"});
  ExpectGolden("2|Process elevated.\n2|Gr\u00FCn\n");

  EXPECT_NONFATAL_FAILURE(ExpectGolden("2|Process elevated.\n"), "- 2: 2|Gr\u00FCn\n");
  EXPECT_NONFATAL_FAILURE(ExpectGolden("2|Process elevated.\n4|Rot\n2|Gr\u00FCn\n"),
                          "tests/unit/support/golden/GoldenTest.IsComparedWhole.txt (- expected "
                          "there, + came):\n  1: 2|Process elevated.\n+ 2: 4|Rot\n");
}

TEST_F(GoldenTest, MustBeThere) {
  EXPECT_NONFATAL_FAILURE(
      ExpectGolden("came\n", "Second"),
      "There is no tests/unit/support/golden/GoldenTest.MustBeThere.Second.txt; "
      "tools/golden writes it. This came:\n+ 1: came\n");
}

class GoldenParameterTest : public testing::TestWithParam<const char*> {
 protected:
  const CNotRewritten not_rewritten_;
};
INSTANTIATE_TEST_SUITE_P(Two, GoldenParameterTest, testing::Values("", "part"));

TEST_P(GoldenParameterTest, BelongsToItsParameter) {
  const std::string part = GetParam();

  ExpectGolden(part.empty() ? "{pid}\n" : "another\n", part);
}

TEST_F(GoldenTest, IsWrittenWhereTheVariableSays) {
  const ScratchFolder scratch;
  const bool is_written_without = RewriteGolden(L"tests/a/golden/b.txt", {"nowhere"});
  ::SetEnvironmentVariableW(kGoldenFolderVariable, scratch.Path().c_str());

  const bool is_written = RewriteGolden(L"tests/a/golden/b.txt", {"one", "two"});

  ::SetEnvironmentVariableW(kGoldenFolderVariable, nullptr);
  EXPECT_FALSE(is_written_without);
  EXPECT_TRUE(is_written);
  EXPECT_EQ(ReadFileBytes(scratch.Path() + L"\\tests\\a\\golden\\b.txt"), "one\ntwo\n");
}

TEST(GoldenDifferenceTest, ShowsWhatIsOnlyInOneWithAFewLinesAround) {
  const struct {
    GoldenLines expected;
    GoldenLines actual;
    const char* difference;
  } cases[] = {
      {{}, {}, ""},
      {{"a", "b"}, {"a", "b"}, ""},
      {{"a"}, {}, "- 1: a\n"},
      {{}, {"a"}, "+ 1: a\n"},
      {{"a", "b", "c"}, {"a", "x", "c"}, "  1: a\n- 2: b\n+ 2: x\n  3: c\n"},
      {{"1", "2", "3", "4", "5", "6"},
       {"new", "1", "2", "3", "4", "5", "6"},
       "+ 1: new\n  1: 1\n  2: 2\n  ...\n"},
      {{"1", "2", "3", "4", "old"}, {"1", "2", "3", "4"}, "  ...\n  3: 3\n  4: 4\n- 5: old\n"},
      // Lines that are repeated.
      {{"a", "b", "a", "b"},
       {"a", "b", "a", "b", "a", "b"},
       "  ...\n  3: a\n  4: b\n+ 5: a\n+ 6: b\n"},
  };
  for (const auto& [expected, actual, difference] : cases) {
    EXPECT_EQ(DescribeDifference(expected, actual), difference);
  }
}

}  // namespace
}  // namespace nhupdate_test
