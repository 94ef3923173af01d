#include "base/windows_path.h"

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

constexpr std::size_t kLongestPlain = 247;

TEST(PathForWindowsTest, HasThePrefixFrom248UnitsOn) {
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"C:\\", L"\\\\?\\C:\\"},
      {L"c:\\A/b\\c/", L"\\\\?\\c:\\A\\b\\c\\"},
      {L"\\\\server\\share\\", L"\\\\?\\UNC\\server\\share\\"},
      {L"\\\\server/share/", L"\\\\?\\UNC\\server\\share\\"},
      // Paths that have a prefix already, and paths that aren't absolute.
      {L"\\\\?\\C:\\a/b\\", L"\\\\?\\C:\\a/b\\"},
      {L"\\\\?\\UNC\\server\\share\\", L"\\\\?\\UNC\\server\\share\\"},
      {L"\\\\.\\pipe\\", L"\\\\.\\pipe\\"},
      {L"C:a\\b/", L"C:a\\b/"},
      {L"\\a/b\\", L"\\a/b\\"},
      {L"a\\b\\", L"a\\b\\"},
  };

  for (const auto& [beginning, extended] : cases) {
    const std::wstring name(kLongestPlain - beginning.size(), L'x');

    EXPECT_EQ(PathForWindows(beginning + name), beginning + name);
    EXPECT_EQ(PathForWindows(beginning + name + L"x"), extended + name + L"x");
  }
}

TEST(PathForWindowsTest, IsAShortPathAsItIs) {
  for (const wchar_t* path : {L"", L"C:", L"C:\\", L"C:/a/b", L"\\\\server\\share", L"a"}) {
    EXPECT_EQ(PathForWindows(path), path);
  }
}

TEST(WithoutExtendedPrefixTest, TakesOffTheOneAndTheOther) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"\\\\?\\C:\\A\\b.exe", L"C:\\A\\b.exe"},
      {L"\\\\?\\UNC\\server\\share\\b.exe", L"\\\\server\\share\\b.exe"},
      {L"\\\\?\\unc\\server\\share", L"\\\\server\\share"},
      // Without the prefix these would mean something else.
      {L"\\\\?\\UNCLE\\A", L"\\\\?\\UNCLE\\A"},
      {L"\\\\?\\Volume{1}\\A", L"\\\\?\\Volume{1}\\A"},
      {L"\\\\?\\C:", L"\\\\?\\C:"},
      {L"\\\\?\\", L"\\\\?\\"},
      {L"C:\\A", L"C:\\A"},
      {L"\\\\server\\share", L"\\\\server\\share"},
      {L"C:\\\\?\\A", L"C:\\\\?\\A"},
      {L"", L""},
  };

  for (const auto& [path, plain] : cases) {
    EXPECT_EQ(WithoutExtendedPrefix(path), plain);
  }
}

TEST(IsTakenAsItStandsTest, IsFalseForNamesThatEndInADotOrASpace) {
  for (const wchar_t* path : {L"C:\\a\\b", L"C:\\.a\\ b\\c.d e", L"C:", L"\\\\server\\share"}) {
    EXPECT_TRUE(nhupdate::IsTakenAsItStands(path)) << testing::PrintToString(path);
  }
  for (const wchar_t* path : {L"C:\\a\\b.", L"C:\\a\\b ", L"C:\\a.\\b", L"C:\\a \\b", L"C:\\..."}) {
    EXPECT_FALSE(nhupdate::IsTakenAsItStands(path)) << testing::PrintToString(path);
  }
}

}  // namespace
}  // namespace nhupdate_test
