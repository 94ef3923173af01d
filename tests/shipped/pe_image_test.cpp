#include "tests/shipped/pe_image.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "tests/support/files.h"
#include "tests/support/packaged_folder.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

// The library as another linker would write it: with something where the time stands, and an entry
// of that kind among those for debuggers.
void WriteWithDebugEntry(const std::wstring& path, DWORD kind) {
  std::string bytes = ReadFileBytes(PackagedFolder() + L"\\NSWLogDynamic64U.dll");
  IMAGE_DOS_HEADER begin = {};
  std::memcpy(&begin, bytes.data(), sizeof(begin));
  const auto offset = static_cast<std::size_t>(begin.e_lfanew);
  IMAGE_NT_HEADERS64 headers = {};
  std::memcpy(&headers, bytes.data() + offset, sizeof(headers));

  // The headers lie in memory as in the file, and behind them is room.
  constexpr DWORD kEntryBytes = sizeof(IMAGE_DEBUG_DIRECTORY);
  const DWORD room = headers.OptionalHeader.SizeOfHeaders - kEntryBytes;
  IMAGE_DEBUG_DIRECTORY entry = {};
  entry.Type = kind;
  std::memcpy(bytes.data() + room, &entry, kEntryBytes);
  headers.FileHeader.TimeDateStamp = 0x12345678;
  headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DEBUG] = {room, kEntryBytes};
  std::memcpy(bytes.data() + offset, &headers, sizeof(headers));
  WriteFileBytes(path, bytes);
}

TEST(PeImageTest, KnowsATimeThatIsAHash) {
  constexpr DWORD kReproducible = 16;
  const ScratchFolder scratch;
  const std::wstring hashed = scratch.Path() + L"\\hashed.dll";
  const std::wstring timed = scratch.Path() + L"\\timed.dll";
  WriteWithDebugEntry(hashed, kReproducible);
  WriteWithDebugEntry(timed, IMAGE_DEBUG_TYPE_CODEVIEW);

  EXPECT_EQ(CPeImage(hashed).FileHeader().TimeDateStamp, 0x12345678U);
  EXPECT_TRUE(CPeImage(hashed).SaysThatItsTimeIsAHash());
  EXPECT_FALSE(CPeImage(timed).SaysThatItsTimeIsAHash());
  EXPECT_FALSE(CPeImage(L"NSWLogDynamic64U.dll").SaysThatItsTimeIsAHash());
}

}  // namespace
}  // namespace nhupdate_test
