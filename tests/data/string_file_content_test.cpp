#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/data/shipped_config.h"
#include "tests/support/installed_product.h"
#include "text/string_keys.h"

namespace nhupdate_test {
namespace {

TEST(ShippedStringFileTest, LoadsExactlyTheThreeTextsThatTheProgramAsksFor) {
  InstalledProduct product;
  for (const std::wstring& name : ShippedStringFiles()) {
    SCOPED_TRACE(testing::PrintToString(name));
    product.DestroyManager();  // the texts of one file would hide what the next one lacks
    nhupdate::CManagerCenter& manager = product.Manager();
    const std::wstring path = ShippedConfigFolder() + L"\\" + name;

    manager.LoadStrings(path);

    EXPECT_THAT(product.Transcript(),
                testing::ElementsAre(L"2|Load strings from " + path, L"2|Total 3 strings loaded."));
    for (const wchar_t* key : {nhupdate::kKeyUpdateTitle, nhupdate::kKeyFailCommonError,
                               nhupdate::kKeyFailNeedStopNHUpdateManager}) {
      EXPECT_NE(manager.GetString(key), key);
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
