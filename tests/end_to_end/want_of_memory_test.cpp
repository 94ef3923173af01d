#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class WantOfMemoryEndToEndTest : public RestartTest {
 protected:
  // Nothing is new.
  void PrepareCheck() const {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
    WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion = 1.0.0\r\n");
  }
};

TEST_F(WantOfMemoryEndToEndTest, EndsACheckAtOnce) {
  const int times = StarveAndRestart({.prepare = [this] { PrepareCheck(); },
                                      .executable = hub_.Manager(),
                                      .arguments = L"-download",
                                      .exit_code = 11},
                                1);

  EXPECT_GT(times, 1);
  RecordProperty("times", times);
}

}  // namespace
}  // namespace nhupdate_test
