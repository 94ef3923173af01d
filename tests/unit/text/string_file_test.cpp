#include "text/string_file.h"

#include <climits>

#include "tests/support/short_path_policy.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ChooseStringFileTest, FallsBackToTheGeneralLanguageAndThenToDefault) {
  const struct {
    std::vector<std::wstring> languages;  // those that there are files for
    std::wstring language;
    std::wstring chosen;
  } cases[] = {
      {{L"pt-BR", L"pt", L"Default"}, L"pt-BR", L"pt-BR"},
      {{L"pt", L"Default"}, L"pt-BR", L"pt"},
      {{L"Default"}, L"pt-BR", L"Default"},
      {{}, L"pt-BR", L"Default"},
      {{L"en", L"Default"}, L"pt-BR", L"Default"},
      {{L"pt-BR", L"Default"}, L"pt", L"Default"},
      {{L"pt-BR", L"Default"}, L"pt-PT", L"Default"},
      {{L"pt", L"Default"}, L"pt", L"pt"},
      // Up to the first hyphen, not the last.
      {{L"zh-Hant", L"zh", L"Default"}, L"zh-Hant-TW", L"zh"},
      {{L"zh-Hant", L"Default"}, L"zh-Hant-TW", L"Default"},
      {{L"zh", L"Default"}, L"zh_TW", L"Default"},
      {{L"zh", L"Default"}, L"zh-", L"zh"},
      {{L"x", L"Default"}, L"x-YZ", L"x"},
      {{L"Default"}, L"Default", L"Default"},
      {{}, L"Default", L"Default"},
      // A hyphen at the beginning has nothing before it.
      {{L"", L"x", L"Default"}, L"-x", L"Default"},
      {{L"-x", L"Default"}, L"-x", L"-x"},
      {{L"", L"Default"}, L"", L""},
      {{L"Default"}, L"", L"Default"},
  };
  for (const auto& c : cases) {
    const ScratchFolder scratch;
    for (const std::wstring& language : c.languages) {
      WriteFileBytes(scratch.Path() + L"\\NHUpdateManager." + language + L".json", "{}");
    }

    EXPECT_EQ(ChooseStringFile(scratch.Path(), c.language),
              scratch.Path() + L"\\NHUpdateManager." + c.chosen + L".json")
        << PrintToString(c.language);
  }
}

TEST(ChooseStringFileTest, TakesWhateverHasTheName) {
  const ScratchFolder scratch;
  const std::wstring folder = scratch.Path() + L"\\NHUpdateManager.de.json";
  CreateFolders(folder);

  EXPECT_EQ(ChooseStringFile(scratch.Path(), L"de"), folder);
}

class ReadStringFileTest : public testing::Test {
 protected:
  // What is read of these bytes.
  StringFileText Read(const std::string& bytes) {
    WriteFileBytes(path_, bytes);
    return ReadStringFile(path_).value_or(StringFileText{L"(nothing)", -1});
  }

  ScratchFolder scratch_;
  std::wstring path_ = scratch_.Path() + L"\\texts.json";
};

TEST_F(ReadStringFileTest, GivesTheTextWithoutItsMarkAndTheSizeOfTheFile) {
  const struct {
    std::string bytes;
    std::wstring text;
  } cases[] = {
      {"", L""},
      {"{\"A\":\"x\"}", L"{\"A\":\"x\"}"},
      {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
      {"\xC3\x84\xE6\x96\xB0\xF0\x9F\x98\x80", L"\u00C4\u65B0\xD83D\xDE00"},
      {"x\xFFy", L"x\uFFFDy"},
      {std::string(300'000, 'a'), std::wstring(300'000, L'a')},
      {"\xEF\xBB\xBF", L""},
      {"\xEF\xBB\xBFx", L"x"},
      {"\xEF\xBB\xBFxyz", L"xyz"},
      {"\xEF\xBB\xBF\xEF\xBB\xBFx", L"\xFEFFx"},  // only one mark is taken off
      {"x\xEF\xBB\xBF", L"x\xFEFF"},
      {"\xEF\xBB\xBCx", L"\xFEFCx"},
      {"\xEF\xBA\xBFx", L"\xFEBFx"},
  };
  for (const auto& c : cases) {
    const StringFileText read = Read(c.bytes);

    EXPECT_TRUE(read.text == c.text) << PrintToString(c.bytes.substr(0, 20));
    EXPECT_EQ(read.byte_count, static_cast<int>(c.bytes.size()));
  }
}

TEST_F(ReadStringFileTest, TakesALongPath) {
  path_ = scratch_.Path() + L"\\" + std::wstring(200, L'a') + L"\\" + std::wstring(100, L'b');
  WriteFileBytes(path_, "x");
  const ShortPathPolicy policy;

  EXPECT_TRUE(ReadStringFile(path_));
}

TEST_F(ReadStringFileTest, ReadsBesideOthersThatReadWriteAndDelete) {
  constexpr DWORD kEverything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  WriteFileBytes(path_, "x");
  const HeldFile held(path_, kEverything, GENERIC_READ | GENERIC_WRITE | DELETE);

  EXPECT_TRUE(ReadStringFile(path_));
}

TEST_F(ReadStringFileTest, LeavesNothingOpen) {
  EXPECT_EQ(Read("x").byte_count, 1);

  // Fails when the file is still open, as nothing is shared.
  const HeldFile held(path_, 0, GENERIC_READ | GENERIC_WRITE);
}

TEST_F(ReadStringFileTest, GivesNothingOfWhatCannotBeOpened) {
  EXPECT_FALSE(ReadStringFile(path_));            // nothing there
  EXPECT_FALSE(ReadStringFile(scratch_.Path()));  // a folder
  WriteFileBytes(path_, "x");
  const HeldFile held(path_);
  EXPECT_FALSE(ReadStringFile(path_));  // not shared
}

// The JSON reader counts in int, the position behind the last unit included.
TEST_F(ReadStringFileTest, GivesNothingOfASizeThatIsUnknownOrTooLargeToCount) {
  const struct {
    BOOL result;
    LONGLONG size;
  } cases[] = {
      {FALSE, 1}, {TRUE, INT_MAX}, {TRUE, LONGLONG{INT_MAX} + 1}, {TRUE, LONGLONG{1} << 32}};
  WriteFileBytes(path_, "x");
  for (const auto& c : cases) {
    const INTERPOSER(GetFileSizeEx) ask([&](HANDLE, LARGE_INTEGER* size) {
      size->QuadPart = c.size;
      return c.result;
    });
    const INTERPOSER(ReadFile) read(Answers(FALSE));

    EXPECT_FALSE(ReadStringFile(path_)) << c.size;
    EXPECT_EQ(read.Calls(), 0) << c.size;
  }
}

// A read gives less after another program has shortened the file, and fails on a damaged disk.
TEST_F(ReadStringFileTest, GivesWhatOneReadGivesOrNothing) {
  WriteFileBytes(path_, "abcdef");
  const struct {
    DWORD count;
    BOOL result;
  } cases[] = {{4, TRUE}, {4, FALSE}};
  for (const auto& c : cases) {
    const INTERPOSER(ReadFile) read([&](HANDLE file, void* bytes, DWORD, auto... rest) {
      read.Original()(file, bytes, c.count, rest...);
      return c.result;
    });

    const std::optional<StringFileText> file = ReadStringFile(path_);

    EXPECT_EQ(read.Calls(), 1);
    ASSERT_EQ(file.has_value(), c.result != FALSE);
    if (file) {
      EXPECT_EQ(file->text, L"abcd");
      EXPECT_EQ(file->byte_count, 4);
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
