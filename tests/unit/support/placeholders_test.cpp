#include <gtest/gtest.h>

#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

TEST(PlaceholdersTest, StandForTheFoldersAndTheProcess) {
  const INTERPOSER(GetCurrentProcessId) process_id([] { return DWORD{42}; });
  struct Case {
    const wchar_t* text;
    const wchar_t* expected;
  };
  const Case cases[] = {
      {L"", L""},
      {L"C:\\Root\\a => C:\\Root\\b", L"{root}\\a => {root}\\b"},
      {L"C:\\Data\\Log", L"{data}\\Log"},
      {L"42", L"{pid}"},
      {L"a(42) -x:42", L"a({pid}) -x:{pid}"},
      {L"142 421 4242 -42", L"142 421 4242 -{pid}"},
  };
  for (const Case& test_case : cases) {
    EXPECT_EQ(WithPlaceholders(test_case.text, L"C:\\Root", L"C:\\Data"), test_case.expected);
  }
}

}  // namespace
}  // namespace nhupdate_test
