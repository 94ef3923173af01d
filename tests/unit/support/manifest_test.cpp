#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/windows.h"

namespace nhupdate_test {
namespace {

// Without it Windows would allow a test less than the program: long paths, for one.
TEST(ManifestTest, OfATestExecutableIsTheProgramsOwn) {
  const HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(1), RT_MANIFEST);
  ASSERT_NE(found, nullptr);

  const std::string manifest(
      static_cast<const char*>(::LockResource(::LoadResource(nullptr, found))),
      ::SizeofResource(nullptr, found));

  EXPECT_THAT(manifest, testing::HasSubstr(">true</longPathAware>"));
  EXPECT_THAT(manifest, testing::HasSubstr("level=\"asInvoker\""));
}

}  // namespace
}  // namespace nhupdate_test
