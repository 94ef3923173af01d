#include <gmock/gmock.h>

#include <climits>
#include <string>

#include "base/windows.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/unit/text/load_strings_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using LoadStringsFromFileTest = LoadStringsTest;

TEST_F(LoadStringsFromFileTest, SaysWhenThereIsNoFile) {
  Load(R"({"A":"a"})");
  ::DeleteFileW(Path().c_str());

  Load();

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, kNotOpened));
  EXPECT_EQ(Text(L"A"), L"a");
}

TEST_F(LoadStringsFromFileTest, CannotOpenAFolder) {
  CreateFolders(Path());

  Load();

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, kNotOpened));
}

TEST_F(LoadStringsFromFileTest, CannotOpenAFileThatIsNotShared) {
  WriteFileBytes(Path(), R"({"A":"a"})");
  const HeldFile held(Path());

  Load();

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, kNotOpened));
}

TEST_F(LoadStringsFromFileTest, ReadsBesideOthersThatReadAndWrite) {
  constexpr DWORD kEverything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  WriteFileBytes(Path(), R"({"A":"a"})");
  const HeldFile held(Path(), kEverything, GENERIC_READ | GENERIC_WRITE | DELETE);

  Load();

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(1)));
}

TEST_F(LoadStringsFromFileTest, TakesAFileThatCannotBeReadForEmpty) {
  WriteFileBytes(Path(), R"({"A":"a"})");
  product_.ForgetRecords();
  {
    INTERPOSER(ReadFile) read([](HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) -> BOOL {
      ::SetLastError(ERROR_CRC);
      return FALSE;
    });
    product_.Manager().LoadStrings(Path());
    EXPECT_EQ(read.Calls(), 1);
  }

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
}

TEST_F(LoadStringsFromFileTest, TakesAFileWithoutAKnownSizeForEmpty) {
  WriteFileBytes(Path(), R"({"A":"a"})");
  product_.ForgetRecords();
  {
    INTERPOSER(GetFileSizeEx) size([](HANDLE, LARGE_INTEGER*) -> BOOL {
      ::SetLastError(ERROR_INVALID_FUNCTION);
      return FALSE;
    });
    product_.Manager().LoadStrings(Path());
    EXPECT_EQ(size.Calls(), 1);
  }

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
}

// The reader counts in int, the position behind the last unit included.
TEST_F(LoadStringsFromFileTest, TakesAFileThatIsTooLargeToCountForEmpty) {
  WriteFileBytes(Path(), R"({"A":"a"})");
  for (const LONGLONG bytes : {LONGLONG{INT_MAX}, LONGLONG{INT_MAX} + 1, LONGLONG{1} << 32}) {
    product_.ForgetRecords();
    int reads = 0;
    {
      INTERPOSER(GetFileSizeEx) size([&](HANDLE, LARGE_INTEGER* result) -> BOOL {
        result->QuadPart = bytes;
        return TRUE;
      });
      INTERPOSER(ReadFile) read([](HANDLE, void*, DWORD, DWORD* count, OVERLAPPED*) -> BOOL {
        *count = 0;
        return TRUE;
      });
      product_.Manager().LoadStrings(Path());
      reads = read.Calls();
    }

    EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0))) << bytes;
    EXPECT_EQ(reads, 0) << bytes;
  }
}

TEST_F(LoadStringsFromFileTest, TakesAFileThatBecameShorterAsItIs) {
  const std::string whole = R"({"A":"a"})";
  WriteFileBytes(Path(), whole);
  product_.ForgetRecords();
  {
    INTERPOSER(ReadFile) read(
        [&](HANDLE file, void* bytes, DWORD byte_count, DWORD* count, OVERLAPPED* overlapped) {
          EXPECT_EQ(byte_count, whole.size());
          return read.Original()(file, bytes, byte_count - 1, count, overlapped);
        });
    product_.Manager().LoadStrings(Path());
    EXPECT_EQ(read.Calls(), 1);
  }

  EXPECT_THAT(product_.Transcript(), ElementsAre(kLoading, Loaded(0)));
}

TEST_F(LoadStringsFromFileTest, ReadsTheWholeFileInOneCall) {
  WriteFileBytes(Path(), "{\"A\":\"" + std::string(300'000, 'a') + "\"}");
  product_.ForgetRecords();
  int calls = 0;
  {
    INTERPOSER(ReadFile) read(
        [&](HANDLE file, void* bytes, DWORD byte_count, DWORD* count, OVERLAPPED* overlapped) {
          calls += byte_count == 300'000 + 8 ? 1 : 100;
          return read.Original()(file, bytes, byte_count, count, overlapped);
        });
    product_.Manager().LoadStrings(Path());
  }

  EXPECT_EQ(calls, 1);
  EXPECT_EQ(Text(L"A").size(), 300'000U);
}

TEST_F(LoadStringsFromFileTest, ClosesTheFile) {
  Load(R"({"A":"a"})");

  // Nobody could, beside a reader.
  const HeldFile held(Path(), 0, GENERIC_READ | GENERIC_WRITE);
}

}  // namespace
}  // namespace nhupdate_test
