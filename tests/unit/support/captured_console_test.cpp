#include "tests/support/captured_console.h"

#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

void WriteToStandardOutput(const std::string& bytes) {
  DWORD written = 0;
  EXPECT_TRUE(::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(),
                          static_cast<DWORD>(bytes.size()), &written, nullptr));
}

TEST(CapturedConsoleTest, TakesWhatIsWritten) {
  const CapturedConsole console;
  EXPECT_EQ(console.Bytes(), "");

  WriteToStandardOutput("Pr\xC3\xBC");
  WriteToStandardOutput("fung\r\n");

  EXPECT_EQ(console.Bytes(),
            "Pr\xC3\xBC"
            "fung\r\n");
  EXPECT_EQ(console.Text(), L"Pr\u00FCfung\r\n");
}

TEST(CapturedConsoleTest, GivesTheStandardOutputBack) {
  const HANDLE before = ::GetStdHandle(STD_OUTPUT_HANDLE);
  {
    const CapturedConsole console;
    EXPECT_NE(::GetStdHandle(STD_OUTPUT_HANDLE), before);
  }

  EXPECT_EQ(::GetStdHandle(STD_OUTPUT_HANDLE), before);
}

}  // namespace
}  // namespace nhupdate_test
