#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// Without the manifest Windows would allow a test less than the program: no long paths, for one.
TEST(ManifestTest, OfATestExecutableIsTheProgramsOwn) {
  const HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(1), RT_MANIFEST);
  ASSERT_NE(found, nullptr);

  const std::string manifest(
      static_cast<const char*>(::LockResource(::LoadResource(nullptr, found))),
      ::SizeofResource(nullptr, found));

  EXPECT_THAT(manifest, HasSubstr(">true</longPathAware>"));
  EXPECT_THAT(manifest, HasSubstr("level=\"asInvoker\""));
}

}  // namespace
}  // namespace nhupdate_test
