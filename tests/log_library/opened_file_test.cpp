#include "log_library/opened_file.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// What is told of a file whose volume and index are these.
OpenedFile InspectOne(DWORD volume, DWORD index_high, DWORD index_low) {
  const INTERPOSER(GetFileType) type(Answers(DWORD{FILE_TYPE_DISK}));
  INTERPOSER(GetFileInformationByHandle) inspect(
      [&](HANDLE, BY_HANDLE_FILE_INFORMATION* information) -> BOOL {
        *information = {};
        information->dwVolumeSerialNumber = volume;
        information->nFileIndexHigh = index_high;
        information->nFileIndexLow = index_low;
        return TRUE;
      });
  OpenedFile opened;
  EXPECT_TRUE(Inspect(UniqueFile(), opened));
  return opened;
}

TEST(OpenedFileTest, IsTheSameWhenVolumeAndWholeIndexAre) {
  const auto identity = InspectOne(1, 2, 3).identity;

  EXPECT_EQ(InspectOne(1, 2, 3).identity, identity);
  EXPECT_NE(InspectOne(9, 2, 3).identity, identity);
  EXPECT_NE(InspectOne(1, 9, 3).identity, identity);
  EXPECT_NE(InspectOne(1, 2, 9).identity, identity);
  EXPECT_NE(InspectOne(1, 3, 2).identity, identity);
}

// A pipe or a console could never be written to as a log is.
TEST(OpenedFileTest, IsNothingThatDoesNotLieOnADisk) {
  for (const DWORD type : {DWORD{FILE_TYPE_CHAR}, DWORD{FILE_TYPE_PIPE}}) {
    const INTERPOSER(GetFileType) other(Answers(type));
    const INTERPOSER(GetFileInformationByHandle) inspect(Answers(TRUE));
    OpenedFile opened;

    EXPECT_FALSE(Inspect(UniqueFile(), opened)) << type;
  }
}

}  // namespace
}  // namespace nhupdate_test
