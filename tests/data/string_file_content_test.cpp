#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "install/failure_notice.h"
#include "tests/data/shipped_config.h"
#include "tests/support/recorded_boxes.h"
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

// How high a box is and where the path stands in it, by what the program itself makes of the
// escapes.
TEST(ShippedStringFileTest, GivesBoxesOfTheSameLinesInEachLanguageAndThePathTheLast) {
  RecordedLog log;
  const std::wstring path = L"C:\\Program Files\\Corvane\\Nimba Hub\\new.dll";
  for (const std::wstring& name : ShippedStringFiles()) {
    const RecordedBoxes boxes;
    nhupdate::StringTable strings;
    nhupdate::LoadStrings(strings, ShippedConfigFolder() + L"\\" + name, log.Log());

    nhupdate::TellFailure(strings, nhupdate::kKeyFailCommonError, path);
    nhupdate::TellFailure(strings, nhupdate::kKeyFailNeedStopNHUpdateManager);

    const auto line_breaks = [](const ShownBox& box) {
      return std::ranges::count(box.text, L'\n');
    };
    ASSERT_THAT(boxes.Shown(), testing::ElementsAre(testing::ResultOf(line_breaks, 4),
                                                    testing::ResultOf(line_breaks, 2)))
        << testing::PrintToString(name);
    EXPECT_TRUE(boxes.Shown()[0].text.ends_with(L"\n" + path)) << testing::PrintToString(name);
  }
}

}  // namespace
}  // namespace nhupdate_test
