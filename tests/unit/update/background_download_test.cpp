// What a check that found something leads to.

#include <gtest/gtest.h>

#include "tests/unit/update/check_and_download_test.h"

namespace nhupdate_test {
namespace {

class BackgroundDownloadTest : public CheckAndDownloadTest {};

TEST_F(BackgroundDownloadTest, KeepsTheResultWhenItCannotBeLaunched) {
  ScriptedShell shell({EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(product_.Transcript(),
            Join({FoundLines(), DownloadLines(L"4|Fail to launch updater for download : 5")}));
}

TEST_F(BackgroundDownloadTest, KeepsTheResultWhenTheUpdaterIsGoneBeforeIt) {
  ScriptedShell shell({EndsWith(0, [this] { RemoveUpdater(); })});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(product_.Transcript(), Join({FoundLines(), DownloadLines(kNoUpdaterLine)}));
}

class DownloadWithoutElevationTest : public CheckAndDownloadTest {
 protected:
  DownloadWithoutElevationTest() : CheckAndDownloadTest({.elevated = false}) {}
};

TEST_F(DownloadWithoutElevationTest, ChecksAndDownloadsAllTheSame) {
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(product_.Transcript(), Join({FoundLines(), DownloadLines()}));
}

}  // namespace
}  // namespace nhupdate_test
