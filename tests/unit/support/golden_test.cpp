#include "tests/support/golden.h"

#include <gtest/gtest-spi.h>

#include "tests/support/windows_basics.h"

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

  EXPECT_NONFATAL_FAILURE(ExpectGolden("2|Process elevated.\n"), "-2|Gr\u00FCn\n");
  EXPECT_NONFATAL_FAILURE(ExpectGolden("2|Process elevated.\n4|Rot\n2|Gr\u00FCn\n"),
                          "tests/unit/support/golden/GoldenTest.IsComparedWhole.txt (- expected "
                          "there, + came):\n@@ +1,3 @@\n 2|Process elevated.\n+4|Rot\n");
}

TEST_F(GoldenTest, MustBeThere) {
  EXPECT_NONFATAL_FAILURE(
      ExpectGolden("came\n", "Second"),
      "There is no tests/unit/support/golden/GoldenTest.MustBeThere.Second.txt; "
      "tools/golden writes it. This came:\n@@ +1,1 @@\n+came\n");
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
  EXPECT_EQ(DescribeDifference({"a", "b"}, {"a", "b"}), "");
  EXPECT_EQ(DescribeDifference({"1", "2", "3", "old", "4", "5", "6"},
                               {"1", "2", "3", "new", "4", "5", "6"}),
            "@@ -2,5 +2,5 @@\n 2\n 3\n-old\n+new\n 4\n 5\n");
}

}  // namespace
}  // namespace nhupdate_test
