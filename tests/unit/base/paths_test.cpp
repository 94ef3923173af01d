#include "base/paths.h"

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

TEST(PathsTest, AreTakenApartAtTheLastBackslash) {
  const struct {
    const wchar_t* path;
    const wchar_t* parent_folder;
    const wchar_t* file_name;
  } cases[] = {
      {L"C:\\A\\B.exe", L"C:\\A", L"B.exe"},
      {L"C:\\A", L"C:", L"A"},
      {L"C:", L"", L"C:"},
      {L"C:\\A\\", L"C:\\A", L""},  // a trailing backslash is the last one
      {L"C:\\A\\\\", L"C:\\A\\", L""},
      {L"NHUpdateManager.exe", L"", L"NHUpdateManager.exe"},
      {L"", L"", L""},
      {L"\\", L"", L""},
      {L"\\A", L"", L"A"},
      {L"\\\\server\\share", L"\\\\server", L"share"},
      {L"\\\\?\\C:\\A", L"\\\\?\\C:", L"A"},
      {L"C:/A/B.exe", L"", L"C:/A/B.exe"},  // a forward slash separates nothing
      {L"C:\\A/B.exe", L"C:", L"A/B.exe"},
      {L"C:\\A\\..\\B", L"C:\\A\\..", L"B"},  // nothing is resolved
      {L"C:\\A\\.", L"C:\\A", L"."},
  };

  for (const auto& c : cases) {
    EXPECT_EQ(ParentFolder(c.path), c.parent_folder) << PrintToString(c.path);
    EXPECT_EQ(FileName(c.path), c.file_name) << PrintToString(c.path);
  }
}

TEST(PathsTest, LieInsideAFolderOnlyBelowItsWholeName) {
  const struct {
    const wchar_t* path;
    const wchar_t* folder;
    bool expected;
  } cases[] = {
      {L"C:\\A", L"C:\\A", true},         {L"c:\\a", L"C:\\A", true},
      {L"C:\\A\\B", L"C:\\A", true},      {L"C:\\a\\b\\c", L"C:\\A", true},
      {L"C:\\AB", L"C:\\A", false},  // a neighbour whose name begins alike
      {L"C:\\A.old\\B", L"C:\\A", false}, {L"C:", L"C:\\A", false},
      {L"C:\\B\\C:\\A", L"C:\\A", false}, {L"C:/A/B", L"C:/A", false},
  };

  for (const auto& c : cases) {
    EXPECT_EQ(IsSameOrInside(c.path, c.folder), c.expected)
        << PrintToString(c.path) << " in " << PrintToString(c.folder);
  }
}

}  // namespace
}  // namespace nhupdate_test
