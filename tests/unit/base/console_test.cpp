#include "base/console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::PrintConsoleError;
using nhupdate::UniqueKernelHandle;
using nhupdate::WriteConsoleText;

// Gives the process another standard output handle for a while.
class StandardOutput {
 public:
  explicit StandardOutput(HANDLE handle) : previous_(::GetStdHandle(STD_OUTPUT_HANDLE)) {
    ::SetStdHandle(STD_OUTPUT_HANDLE, handle);
  }
  ~StandardOutput() { ::SetStdHandle(STD_OUTPUT_HANDLE, previous_); }
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  HANDLE previous_;
};

TEST(PrintConsoleErrorTest, WritesTheFormattedTextAndNoLineEndOfItsOwn) {
  const CapturedConsole console;

  PrintConsoleError(L"Log start fail : %d\n", 7);
  PrintConsoleError(L"%s", std::wstring(L"100%s"));

  EXPECT_EQ(console.Bytes(), "Log start fail : 7\n100%s");
}

TEST(PrintConsoleErrorTest, LeavesStandardErrorAlone) {
  const CapturedConsole console;
  INTERPOSER(GetStdHandle) standard_handle([&](DWORD which) {
    EXPECT_EQ(which, STD_OUTPUT_HANDLE);
    return standard_handle.Original()(which);
  });

  PrintConsoleError(L"text");

  EXPECT_EQ(standard_handle.Calls(), 1);
}

TEST(WriteConsoleTextTest, WritesUtf8ToAFile) {
  const CapturedConsole console;

  WriteConsoleText(L"a\u00FC\u20AC\U0001F600");

  EXPECT_EQ(console.Bytes(), "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(WriteConsoleTextTest, ReplacesUnpairedSurrogatesInAFile) {
  const CapturedConsole console;

  WriteConsoleText({L'a', wchar_t{0xD83D}, L'b', wchar_t{0xDE00}});

  EXPECT_EQ(console.Bytes(),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
}

TEST(WriteConsoleTextTest, WritesNothingForAnEmptyText) {
  const CapturedConsole console;

  WriteConsoleText(L"");

  EXPECT_EQ(console.Bytes(), "");
}

TEST(WriteConsoleTextTest, WritesALongTextWhole) {
  const CapturedConsole console;
  const std::size_t length = 1 << 20;

  WriteConsoleText(std::wstring(length, L'x'));

  EXPECT_EQ(console.Bytes(), std::string(length, 'x'));
}

TEST(WriteConsoleTextTest, WritesUtf8ToAPipe) {
  HANDLE read_end = nullptr;
  HANDLE write_end = nullptr;
  ASSERT_TRUE(::CreatePipe(&read_end, &write_end, nullptr, 0));
  const UniqueKernelHandle reader(read_end);
  UniqueKernelHandle writer(write_end);
  {
    const StandardOutput output(writer.Get());
    WriteConsoleText(L"Pr\u00FCfung\n");
  }
  writer.Reset();

  std::array<char, 64> bytes = {};
  DWORD read = 0;
  ::ReadFile(reader.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);

  EXPECT_EQ(std::string(bytes.data(), read),
            "Pr\xC3\xBC"
            "fung\n");
}

TEST(WriteConsoleTextTest, WritesNothingInPlaceOfATextThatCantBeConverted) {
  const CapturedConsole console;
  INTERPOSER(WideCharToMultiByte) convert([&](UINT code_page, DWORD flags, const wchar_t* text,
                                              int units, char* bytes, int size,
                                              const char* replacement, BOOL* is_replaced) {
    if (bytes == nullptr) {
      return convert.Original()(code_page, flags, text, units, bytes, size, replacement,
                                is_replaced);
    }
    ::SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
  });

  WriteConsoleText(L"abc");

  EXPECT_EQ(console.Bytes(), "");
  EXPECT_EQ(convert.Calls(), 2);
}

TEST(WriteConsoleTextTest, GoesOnAfterAPartialWriteToAStream) {
  const CapturedConsole console;
  INTERPOSER(WriteFile) write(
      [&](HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
        return write.Original()(file, bytes, count > 3 ? 3 : count, written, overlapped);
      });

  WriteConsoleText(L"abcdefgh");

  EXPECT_EQ(console.Bytes(), "abcdefgh");
  EXPECT_EQ(write.Calls(), 3);
}

TEST(WriteConsoleTextTest, GivesUpOnAStreamThatTakesNothing) {
  const CapturedConsole console;
  INTERPOSER(WriteFile) write([](HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) -> BOOL {
    *written = 0;
    return TRUE;
  });

  WriteConsoleText(L"abc");

  EXPECT_EQ(write.Calls(), 1);
}

TEST(WriteConsoleTextTest, GivesUpOnAStreamThatFails) {
  const CapturedConsole console;
  INTERPOSER(WriteFile) write([](HANDLE, const void*, DWORD, DWORD* written, OVERLAPPED*) -> BOOL {
    *written = 1;
    ::SetLastError(ERROR_BROKEN_PIPE);
    return FALSE;
  });

  WriteConsoleText(L"abc");

  EXPECT_EQ(write.Calls(), 1);
}

TEST(WriteConsoleTextTest, WritesNothingWithoutAStandardOutput) {
  for (const HANDLE absent : {static_cast<HANDLE>(nullptr), INVALID_HANDLE_VALUE}) {
    const StandardOutput output(absent);
    INTERPOSER(WriteFile) write(
        [](HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) -> BOOL { return FALSE; });
    INTERPOSER(WriteConsoleW) write_console(
        [](HANDLE, const void*, DWORD, DWORD*, void*) -> BOOL { return FALSE; });

    WriteConsoleText(L"abc");

    EXPECT_EQ(write.Calls(), 0);
    EXPECT_EQ(write_console.Calls(), 0);
  }
}

TEST(WriteConsoleTextTest, SurvivesAStandardOutputThatWasClosed) {
  HANDLE read_end = nullptr;
  HANDLE write_end = nullptr;
  ASSERT_TRUE(::CreatePipe(&read_end, &write_end, nullptr, 0));
  ::CloseHandle(read_end);
  ::CloseHandle(write_end);
  const StandardOutput output(write_end);
  INTERPOSER(WriteFile) write(
      [&](HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
        return write.Original()(file, bytes, count, written, overlapped);
      });

  WriteConsoleText(L"abc");

  EXPECT_EQ(write.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
