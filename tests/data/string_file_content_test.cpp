#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/data/shipped_config.h"
#include "tests/support/recorded_log.h"
#include "text/string_keys.h"
#include "text/string_table.h"

namespace nhupdate_test {
namespace {

TEST(ShippedStringFileTest, LoadsExactlyTheThreeTextsThatTheProgramAsksFor) {
  RecordedLog log;
  for (const std::wstring& name : ShippedStringFiles()) {
    const std::wstring path = ShippedConfigFolder() + L"\\" + name;
    nhupdate::StringTable strings;
    log.ForgetRecords();

    nhupdate::LoadStrings(strings, path, log.Log());

    EXPECT_THAT(log.Records(),
                testing::ElementsAre(L"2|Load strings from " + path, L"2|Total 3 strings loaded."));
    for (const wchar_t* key : {nhupdate::kKeyUpdateTitle, nhupdate::kKeyFailCommonError,
                               nhupdate::kKeyFailNeedStopNHUpdateManager}) {
      EXPECT_TRUE(strings.contains(key)) << testing::PrintToString(name);
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
