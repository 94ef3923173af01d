#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

TEST(LogStartTest, SucceedsWithZeroAndMakesTheFile) {
  const LogPlace place;
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ListTree(place.Folder()), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogStartTest, FailsWithACodeOfItsOwnForEachUnusableFolder) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"file"), "x");
  const std::wstring missing = place.Outside(L"missing");
  const std::wstring file = place.Outside(L"file");
  const std::wstring wrong = place.Outside(L"a?b");
  const struct {
    const char* name;
    const wchar_t* folder;
    int result;
  } cases[] = {
      {"null", nullptr, 1},
      {"empty", L"", 1},
      {"missing", missing.c_str(), 2},
      {"a file", file.c_str(), 2},
      {"no possible name", wrong.c_str(), 2},
      {"a device", L"\\\\.\\NUL", 2},
  };
  for (const auto& test : cases) {
    LoadedLogLibrary library;
    EXPECT_EQ(library.Start(place.Settings().c_str(), test.folder), test.result) << test.name;
    library.Write(L"ignored");
    library.Flush();
    library.Stop();
  }
  EXPECT_TRUE(ListTree(place.Folder()).empty());
  EXPECT_FALSE(nhupdate::Exists(missing));
}

TEST(LogStartTest, FailsWhenNoFileCanBeWritten) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 0;
  {
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          if (!std::wstring_view(path).ends_with(L".log")) {
            return create.Original()(path, access, sharing, security, disposition, flags, model);
          }
          ::SetLastError(ERROR_ACCESS_DENIED);
          return INVALID_HANDLE_VALUE;
        });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(L"ignored");

  EXPECT_EQ(result, 4);
  EXPECT_TRUE(ListTree(place.Folder()).empty());
}

TEST(LogStartTest, AFailedStartEndsTheLogBefore) {
  const LogPlace place;
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"before");

  const int result = library.Start(place.Settings(), L"");
  library.Write(L"after");

  EXPECT_EQ(result, 1);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("before"));
}

TEST(LogStartTest, StartingAgainGoesOnInTheNewFolder) {
  const LogPlace first;
  const LogPlace second;
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(first.Settings(), first.Folder()), 0);
  library.Write(L"one");

  EXPECT_EQ(library.Start(second.Settings(), second.Folder()), 0);
  library.Write(L"two");

  EXPECT_THAT(ReadTexts(first.CurrentFile()), ElementsAre("one"));
  EXPECT_THAT(ReadTexts(second.CurrentFile()), ElementsAre("two"));
}

TEST(LogStartTest, GoesOnInAFileWhoseNameIsInOtherLetters) {
  const LogPlace place;
  const std::wstring file = place.Folder() + L"\\nhupdatemanager.LOG";
  WriteFileBytes(file, "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] earlier\n");
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(L"now");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(file), ElementsAre("earlier", "now"));
}

TEST(LogStartTest, AcceptsABackslashBehindTheFolderAndAnEarlierLog) {
  const LogPlace place;
  WriteFileBytes(place.CurrentFile(), "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] earlier\n");
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder() + L"\\");
  library.Write(L"now");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("earlier", "now"));
}

}  // namespace
}  // namespace nhupdate_test
