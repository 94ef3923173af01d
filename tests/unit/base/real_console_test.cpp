// Text for a console window. There is none where the tests run, so its functions are replaced.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "base/console.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::WriteConsoleText;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kChunkUnits = 8192;

class RealConsoleTest : public testing::Test {
 protected:
  // The sizes of the writes, and all their text together.
  std::vector<std::size_t> sizes_;
  std::wstring text_;
  // How many units the console takes at once.
  std::size_t capacity_ = static_cast<std::size_t>(-1);
  bool fails_ = false;

  CapturedConsole stream_;
  INTERPOSER(GetConsoleMode) mode_{[](HANDLE, DWORD* mode) -> BOOL {
    *mode = ENABLE_PROCESSED_OUTPUT;
    return TRUE;
  }};
  INTERPOSER(WriteConsoleW) write_{[this](HANDLE console, const void* text, DWORD units,
                                          DWORD* written, void* reserved) -> BOOL {
    EXPECT_EQ(console, ::GetStdHandle(STD_OUTPUT_HANDLE));
    EXPECT_EQ(reserved, nullptr);
    sizes_.push_back(units);
    *written = fails_ ? 0 : static_cast<DWORD>(std::min<std::size_t>(units, capacity_));
    text_.append(static_cast<const wchar_t*>(text), *written);
    return fails_ ? FALSE : TRUE;
  }};
};

TEST_F(RealConsoleTest, GetsWideTextAndTheStreamNothing) {
  WriteConsoleText(L"Pr\u00FCfung \U0001F600\n");

  EXPECT_EQ(text_, L"Pr\u00FCfung \U0001F600\n");
  EXPECT_EQ(stream_.Bytes(), "");
}

TEST_F(RealConsoleTest, GetsNothingForAnEmptyText) {
  WriteConsoleText(L"");

  EXPECT_THAT(sizes_, IsEmpty());
}

TEST_F(RealConsoleTest, GetsALongTextInChunks) {
  const std::wstring text(2 * kChunkUnits + 1, L'x');

  WriteConsoleText(text);

  EXPECT_TRUE(text_ == text);
  EXPECT_THAT(sizes_, ElementsAre(kChunkUnits, kChunkUnits, 1));
}

TEST_F(RealConsoleTest, GetsATextOfExactlyOneChunkAtOnce) {
  WriteConsoleText(std::wstring(kChunkUnits, L'x'));

  EXPECT_THAT(sizes_, ElementsAre(kChunkUnits));
}

TEST_F(RealConsoleTest, GetsSurrogatePairsUndivided) {
  const std::wstring text = std::wstring(kChunkUnits - 1, L'x') + L"\U0001F600y";

  WriteConsoleText(text);

  EXPECT_TRUE(text_ == text);
  EXPECT_THAT(sizes_, ElementsAre(kChunkUnits - 1, 3));
}

TEST_F(RealConsoleTest, GetsUnpairedSurrogatesAsTheyAre) {
  const std::vector<std::wstring> texts = {
      {wchar_t{0xD83D}},
      {wchar_t{0xDE00}},
      {L'a', wchar_t{0xD83D}},
      {wchar_t{0xD83D}, wchar_t{0xD83D}, L'b'},
      std::wstring(kChunkUnits, wchar_t{0xD83D}),
  };

  for (const std::wstring& text : texts) {
    text_.clear();
    WriteConsoleText(text);
    EXPECT_TRUE(text_ == text) << text.size() << " units";
  }
}

TEST_F(RealConsoleTest, GetsTheRestAfterAPartialWrite) {
  capacity_ = 3;

  WriteConsoleText(L"abcdefgh");

  EXPECT_EQ(text_, L"abcdefgh");
  EXPECT_THAT(sizes_, ElementsAre(8, 5, 2));
}

TEST_F(RealConsoleTest, IsGivenUpWhenItFails) {
  fails_ = true;

  WriteConsoleText(L"abc");

  EXPECT_THAT(sizes_, ElementsAre(3));
}

TEST_F(RealConsoleTest, IsGivenUpWhenItTakesNothing) {
  capacity_ = 0;

  WriteConsoleText(L"abc");

  EXPECT_THAT(sizes_, ElementsAre(3));
}

}  // namespace
}  // namespace nhupdate_test
