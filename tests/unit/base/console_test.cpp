#include "base/console.h"

#include "tests/support/captured_console.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

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

TEST(PrintConsoleErrorTest, WritesTheFormattedTextToTheStandardOutputAndNoLineEndOfItsOwn) {
  const CapturedConsole console;
  const INTERPOSER(GetStdHandle) standard_handle(
      [&](DWORD which) { EXPECT_EQ(which, STD_OUTPUT_HANDLE); });

  PrintConsoleError(L"Log start fail : %d\n", 7);
  PrintConsoleError(L"%s", std::wstring(L"100%s"));

  EXPECT_EQ(console.Bytes(), "Log start fail : 7\n100%s");
}

TEST(ConsoleStreamTest, GetsEveryTextWholeAsUtf8) {
  struct Case {
    std::wstring text;
    std::string bytes;
  };
  const std::size_t long_text = 1 << 20;
  const Case cases[] = {
      {L"", ""},
      {L"a\u00FC\u20AC\U0001F600", "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"},
      // Surrogates without their other half.
      {{L'a', wchar_t{0xD83D}, L'-', wchar_t{0xDE00}}, "a\xEF\xBF\xBD-\xEF\xBF\xBD"},
      {std::wstring(long_text, L'x'), std::string(long_text, 'x')},
  };

  for (const Case& c : cases) {
    const CapturedConsole console;
    WriteConsoleText(c.text);
    EXPECT_TRUE(console.Bytes() == c.bytes) << c.text.size() << " units";
  }
}

struct Pipe {
  Pipe() { EXPECT_TRUE(::CreatePipe(reader.Receive(), writer.Receive(), nullptr, 0)); }

  UniqueKernelHandle reader;
  UniqueKernelHandle writer;
};

TEST(ConsoleStreamTest, MayBeAPipe) {
  Pipe pipe;
  {
    const StandardOutput output(pipe.writer.Get());
    WriteConsoleText(L"\u00FC!\n");
  }
  pipe.writer.Reset();

  std::array<char, 64> bytes = {};
  DWORD read = 0;
  ::ReadFile(pipe.reader.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);

  EXPECT_EQ(std::string(bytes.data(), read), "\xC3\xBC!\n");
}

TEST(ConsoleStreamTest, GetsNothingInPlaceOfATextThatCantBeConverted) {
  const CapturedConsole console;
  INTERPOSER(WideCharToMultiByte) convert(
      [&](UINT page, DWORD flags, const wchar_t* text, int units, char* bytes, auto... rest) {
        return bytes != nullptr ? 0 : convert.Original()(page, flags, text, units, bytes, rest...);
      });

  WriteConsoleText(L"abc");

  EXPECT_EQ(console.Bytes(), "");
  EXPECT_EQ(convert.Calls(), 2);
}

TEST(ConsoleStreamTest, GetsTheRestAfterAPartialWriteUnlessItTakesNothingOrFails) {
  const struct {
    const char* name;
    BOOL result;
    DWORD at_once;
    std::vector<DWORD> writes;
  } cases[] = {
      {"three at once", TRUE, 3, {8, 5, 2}},
      {"nothing", TRUE, 0, {8}},
      {"a failure", FALSE, 1, {8}},
  };

  for (const auto& c : cases) {
    const CapturedConsole console;
    std::vector<DWORD> writes;
    INTERPOSER(WriteFile) write(
        [&](HANDLE, const void* bytes, DWORD count, DWORD* written, auto...) {
          EXPECT_EQ(*static_cast<const char*>(bytes), "abcdefgh"[8 - count]);
          writes.push_back(count);
          *written = std::min(count, c.at_once);
          return c.result;
        });

    WriteConsoleText(L"abcdefgh");

    EXPECT_EQ(writes, c.writes) << c.name;
  }
}

TEST(ConsoleStreamTest, MayBeMissing) {
  for (const HANDLE absent : {static_cast<HANDLE>(nullptr), INVALID_HANDLE_VALUE}) {
    const StandardOutput output(absent);
    INTERPOSER(WriteFile) write(Answers(FALSE));
    INTERPOSER(WriteConsoleW) write_console(Answers(FALSE));

    WriteConsoleText(L"abc");

    EXPECT_EQ(write.Calls() + write_console.Calls(), 0);
  }
}

TEST(ConsoleStreamTest, MayHaveBeenClosed) {
  Pipe pipe;
  const StandardOutput output(pipe.writer.Get());
  pipe.writer.Reset();
  const INTERPOSER(WriteFile) write;

  WriteConsoleText(L"abc");

  EXPECT_EQ(write.Calls(), 1);
}

// There is no console where the tests run, so its functions are replaced.
TEST(RealConsoleTest, GetsWideTextInChunksThatDivideNoPair) {
  constexpr std::size_t kChunk = 8192;
  constexpr std::size_t kAll = static_cast<std::size_t>(-1);
  constexpr wchar_t kLead = 0xD83D;
  constexpr wchar_t kTrail = 0xDE00;
  struct Case {
    const char* name;
    std::wstring text;
    std::vector<std::size_t> writes;
    std::size_t at_once = kAll;  // that the console takes
    BOOL result = TRUE;
  };
  const std::wstring almost_all(kChunk - 1, L'x');
  const Case cases[] = {
      {"nothing", L"", {}},
      {"a short text", L"Pr\u00FCfung \U0001F600\n", {11}},
      {"one chunk", std::wstring(kChunk, L'x'), {kChunk}},
      {"more than two", std::wstring(2 * kChunk + 1, L'x'), {kChunk, kChunk, 1}},
      {"the first pair at the border", almost_all + L"\U00010000y", {kChunk - 1, 3}},
      {"the last pair at the border", almost_all + L"\U0010FFFFy", {kChunk - 1, 3}},
      {"a pair at the end", L"a\U00010000", {3}},
      {"half a pair", {kLead}, {1}},
      {"the other half", {kTrail}, {1}},
      {"half a pair at the end", {L'a', kLead}, {1, 1}},
      {"halves in a row", {kLead, kLead, L'b'}, {3}},
      {"nothing but halves", std::wstring(kChunk, kLead), {kChunk - 1, 1}},
      {"three at once", L"abcdefgh", {8, 5, 2}, 3},
      {"taking nothing", L"abc", {3}, 0},
      {"failing", L"abc", {3}, 0, FALSE},
  };

  for (const Case& c : cases) {
    const CapturedConsole stream;
    std::vector<std::size_t> writes;
    std::wstring text;
    INTERPOSER(GetConsoleMode) mode(Answers(TRUE));
    INTERPOSER(WriteConsoleW) write(
        [&](HANDLE console, const void* units, DWORD count, DWORD* written, void* reserved) {
          EXPECT_EQ(console, ::GetStdHandle(STD_OUTPUT_HANDLE));
          EXPECT_EQ(reserved, nullptr);
          writes.push_back(count);
          *written = static_cast<DWORD>(std::min<std::size_t>(count, c.at_once));
          text.append(static_cast<const wchar_t*>(units), *written);
          return c.result;
        });

    WriteConsoleText(c.text);

    EXPECT_EQ(writes, c.writes) << c.name;
    EXPECT_TRUE(text == (c.at_once == 0 ? L"" : c.text)) << c.name;
    EXPECT_EQ(stream.Bytes(), "") << c.name;
  }
}

}  // namespace
}  // namespace nhupdate_test
