#include "log_library/program_version.h"

#include <cstring>

#include "tests/support/windows_basics.h"

// This needs <windows.h> first.
#include <winver.h>

namespace nhupdate_test {
namespace {

TEST(ProgramVersionTest, IsReadFromTheFixedPartOfTheResource) {
  constexpr std::size_t kFixedPartOffset = 40;
  const struct {
    const char* name;
    DWORD signature;
    DWORD upper;
    DWORD lower;
    DWORD size;
    const wchar_t* version;
  } cases[] = {
      {"three parts", VS_FFI_SIGNATURE, 0x0001'0003, 0x0000'0000, 92, L"1.3.0"},
      {"four parts", VS_FFI_SIGNATURE, 0xFFFF'0000, 0x0002'0001, 92, L"65535.0.2.1"},
      {"another kind of resource", 0x1234'5678, 0x0001'0003, 0x0000'0000, 92, L"unknown"},
      {"cut off", VS_FFI_SIGNATURE, 0x0001'0003, 0x0000'0000, 91, L"unknown"},
  };
  for (const auto& test : cases) {
    VS_FIXEDFILEINFO information = {};
    information.dwSignature = test.signature;
    information.dwFileVersionMS = test.upper;
    information.dwFileVersionLS = test.lower;
    std::vector<char> resource(kFixedPartOffset + sizeof(information));
    std::memcpy(resource.data() + kFixedPartOffset, &information, sizeof(information));
    const INTERPOSER(SizeofResource) size(Answers(test.size));
    const INTERPOSER(LockResource) lock(Answers<void*>(resource.data()));

    EXPECT_EQ(ProgramVersion(), test.version) << test.name;
  }
}

TEST(ProgramVersionTest, IsUnknownWithoutAResource) {
  {
    const INTERPOSER(FindResourceW) find(Answers(HRSRC{}, ERROR_RESOURCE_TYPE_NOT_FOUND));
    EXPECT_EQ(ProgramVersion(), L"unknown");
  }
  {
    const INTERPOSER(LockResource) lock(Answers<void*>(nullptr));
    EXPECT_EQ(ProgramVersion(), L"unknown");
  }
}

}  // namespace
}  // namespace nhupdate_test
