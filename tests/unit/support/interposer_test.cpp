#include "tests/support/interposer.h"

#include <thread>

#include "base/folder_listing.h"
#include "tests/support/log_journal.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(InterposerTest, ReplacesTheFunctionUntilItIsDestroyed) {
  const ScratchFolder scratch;
  const std::wstring folder = scratch.Path() + L"\\folder";
  {
    INTERPOSER(CreateDirectoryW) create(Answers(FALSE, ERROR_DISK_FULL));

    EXPECT_FALSE(::CreateDirectoryW(folder.c_str(), nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
    EXPECT_EQ(create.Calls(), 1);
  }
  EXPECT_FALSE(Exists(folder));

  EXPECT_TRUE(::CreateDirectoryW(folder.c_str(), nullptr));
}

TEST(InterposerTest, PassesOnWhatAFakeHasNoAnswerFor) {
  const ScratchFolder scratch;
  std::vector<std::wstring> seen;
  const auto folder = [&](const wchar_t* name) { return scratch.Path() + L"\\" + name; };
  {
    INTERPOSER(CreateDirectoryW) create(
        [&](const wchar_t* path, auto... rest) { return create.Original()(path, rest...); });
    EXPECT_TRUE(::CreateDirectoryW(folder(L"a").c_str(), nullptr));
  }
  {
    const INTERPOSER(CreateDirectoryW) create(
        [&](const wchar_t* path, auto...) { seen.push_back(path); });
    EXPECT_TRUE(::CreateDirectoryW(folder(L"b").c_str(), nullptr));
  }
  {
    const INTERPOSER(CreateDirectoryW) create(
        AnswersIf([&](const std::wstring& path, auto) { return path == folder(L"refused"); }, FALSE,
                  ERROR_DISK_FULL));
    EXPECT_TRUE(::CreateDirectoryW(folder(L"c").c_str(), nullptr));
    EXPECT_FALSE(::CreateDirectoryW(folder(L"refused").c_str(), nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_DISK_FULL});
  }
  {
    const INTERPOSER(CreateDirectoryW) create(AnswersCall(2, FALSE, ERROR_DISK_FULL));
    EXPECT_TRUE(::CreateDirectoryW(folder(L"d").c_str(), nullptr));
    EXPECT_FALSE(::CreateDirectoryW(folder(L"second").c_str(), nullptr));
    EXPECT_TRUE(::CreateDirectoryW(folder(L"e").c_str(), nullptr));
  }
  {
    const INTERPOSER(CreateDirectoryW) create(AnswersFor(folder(L"other"), FALSE, ERROR_DISK_FULL));
    EXPECT_FALSE(::CreateDirectoryW(folder(L"other").c_str(), nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_DISK_FULL});
    EXPECT_TRUE(::CreateDirectoryW(folder(L"f").c_str(), nullptr));
  }
  {
    const INTERPOSER(CreateDirectoryW) create;
    EXPECT_TRUE(::CreateDirectoryW(folder(L"g").c_str(), nullptr));
    EXPECT_EQ(create.Calls(), 1);
  }

  EXPECT_THAT(seen, ElementsAre(folder(L"b")));
  EXPECT_THAT(ListTree(scratch.Path()),
              ElementsAre(L"a\\", L"b\\", L"c\\", L"d\\", L"e\\", L"f\\", L"g\\"));
}

TEST(InterposerTest, KeepsFunctionsOfTheSameSignatureApart) {
  INTERPOSER(DeleteFileW) delete_file(Answers(11));
  INTERPOSER(RemoveDirectoryW) remove_directory(Answers(22));

  EXPECT_EQ(::DeleteFileW(L"a"), 11);
  EXPECT_EQ(::RemoveDirectoryW(L"a"), 22);
}

TEST(InterposerTest, ReachesTheCallsOfTheProgramsOwnObjects) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\file", "x");
  INTERPOSER(FindFirstFileW) find(Answers(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  CFolderListing listing(scratch.Path());

  EXPECT_FALSE(listing.Next());
  EXPECT_EQ(find.Calls(), 1);
}

TEST(InterposerTest, ReplacesAFunctionForALoadedLibraryOnly) {
  const ScratchFolder scratch;
  const std::wstring journal = scratch.Path() + L"\\journal";
  ::SetEnvironmentVariableW(kLogJournalVariable, journal.c_str());
  const HMODULE library = ::LoadLibraryW((TestProgramFolder() + L"\\recording_log.dll").c_str());
  ASSERT_NE(library, nullptr);
  const auto stop = reinterpret_cast<void (*)()>(::GetProcAddress(library, "Stop"));
  {
    const INTERPOSER(CreateFileW) open(library, Answers(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

    stop();
    WriteFileBytes(scratch.Path() + L"\\own", "");

    EXPECT_EQ(open.Calls(), 1);
    EXPECT_THAT(ListTree(scratch.Path()), ElementsAre(L"own"));
  }
  stop();
  EXPECT_EQ(ReadLogJournal(journal).size(), 1u);

  ::FreeLibrary(library);
  ::SetEnvironmentVariableW(kLogJournalVariable, nullptr);
}

TEST(InterposerTest, CountsTheCallsOfSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kCallsOfEach = 500'000;
  const INTERPOSER(GetTickCount) tick_count(Answers(DWORD{1}));
  std::vector<std::thread> threads;

  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([] {
      for (int call = 0; call < kCallsOfEach; ++call) {
        ::GetTickCount();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }

  EXPECT_EQ(tick_count.Calls(), kThreads * kCallsOfEach);
}

TEST(InterposerDeathTest, RefusesAFunctionThatIsNotImported) {
  EXPECT_DEATH(std::ignore = FindImportSlot("NoSuchFunctionW"), "does not import NoSuchFunctionW");
}

}  // namespace
}  // namespace nhupdate_test
