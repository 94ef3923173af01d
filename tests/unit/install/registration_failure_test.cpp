// No value that can't be had or written makes a registration fail.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/registry_recorder.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class HinderedRegistrationTest : public testing::Test {
 protected:
  HinderedRegistrationTest() {
    product_.Start();
    product_.ForgetRecords();
  }

  InstalledProduct product_;
  ScratchRegistry registry_;
  INTERPOSER(GetLocalTime) local_time_{[](SYSTEMTIME* now) { *now = {}; }};
};

TEST_F(HinderedRegistrationTest, SaysTheSameWhenNoKeyCanBeOpened) {
  INTERPOSER(RegCreateKeyExW) create([](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                        SECURITY_ATTRIBUTES*, HKEY*,
                                        DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; });

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_EQ(create.Calls(), 12);
  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Nimba Hub registry set.",
                                                 L"2|NHUpdateManager crash dump folder set to : "
                                                 L"{data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log"));
}

TEST_F(HinderedRegistrationTest, WritesTheRestWhenOneValueCannotBeWritten) {
  std::vector<WrittenValue> all;
  {
    const RegistryRecorder recorder;
    EXPECT_EQ(product_.Manager().RegisterProduct(), 1);
    all = recorder.Written();
    ASSERT_EQ(all.size(), 12u);
  }

  for (int failing = 1; failing <= 12; ++failing) {
    RegistryRecorder recorder;
    recorder.FailAtValue(failing);

    EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

    std::vector<WrittenValue> expected = all;
    expected.erase(expected.begin() + failing - 1);
    EXPECT_EQ(recorder.Written(), expected) << failing;
    EXPECT_EQ(recorder.OpenKeys(), 0) << failing;
  }
}

TEST_F(HinderedRegistrationTest, WritesAnUnknownLogFolderAsNoBytes) {
  InstalledProduct without_data({.has_program_data = false});
  without_data.Start();
  without_data.ForgetRecords();
  const RegistryRecorder recorder;

  EXPECT_EQ(without_data.Manager().RegisterProduct(), 1);

  ASSERT_EQ(recorder.Written().size(), 12u);
  EXPECT_EQ(recorder.Written()[3].name, L"DumpFolder");
  EXPECT_EQ(recorder.Written()[3].bytes.size(), 0u);
  EXPECT_THAT(
      without_data.Transcript(),
      ElementsAre(L"2|Nimba Hub registry set.", L"2|NHUpdateManager crash dump folder set to : "));
}

}  // namespace
}  // namespace nhupdate_test
