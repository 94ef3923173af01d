#include "tests/end_to_end/support/product_registry.h"

#include <gmock/gmock.h>

#include "base/registry.h"
#include "tests/support/interposer.h"
#include "tests/support/product_keys.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;

std::string DescribeInstalledOn(const SYSTEMTIME& day) {
  const std::wstring text = std::to_wstring(day.wYear * 10000 + day.wMonth * 100 + day.wDay);
  const ScratchRegistry registry;
  EXPECT_EQ(nhupdate::SetRegString(kUninstallKey, L"InstallDate", text), 1);
  return DescribeProductKeys();
}

TEST(ProductRegistryTest, NamesTheDayOnWhichTheRunBeganAlsoBehindMidnight) {
  SYSTEMTIME first_day = {};
  ::GetLocalTime(&first_day);
  SYSTEMTIME next_day = first_day;
  ++next_day.wYear;  // any later one will do
  INTERPOSER(GetLocalTime) local_time([&](SYSTEMTIME* now) { *now = next_day; });

  EXPECT_THAT(DescribeInstalledOn(first_day), EndsWith("InstallDate = \"{today}\"\n"));
  EXPECT_THAT(DescribeInstalledOn(next_day), EndsWith("InstallDate = \"{today}\"\n"));
}

TEST(ProductRegistryTest, ShowsAnotherDayAsItIs) {
  EXPECT_THAT(DescribeInstalledOn({2001, 2, 0, 3, 0, 0, 0, 0}),
              EndsWith("InstallDate = \"20010203\"\n"));
}

}  // namespace
}  // namespace nhupdate_test
