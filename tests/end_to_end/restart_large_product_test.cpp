// A product of many files in many folders, so that there are many moments at which it is half
// replaced.

#include <string>

#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"
#include "tests/support/long_tests.h"

namespace nhupdate_test {
namespace {

constexpr int kFolders = 25;
constexpr int kFilesInEach = 8;
// Each is deleted and copied once.
constexpr int kFewestMoments = 2 * kFolders * (kFilesInEach + 1);
constexpr int kStride = 180;

class RestartLargeProductEndToEndTest : public RestartTest {
 protected:
  static void PutFolders(const std::wstring& product, const std::string& content) {
    for (int folder = 0; folder < kFolders; ++folder) {
      for (int file = 0; file < kFilesInEach; ++file) {
        WriteFileBytes(product + L"\\Folder" + std::to_wstring(folder) + L"\\File" +
                           std::to_wstring(file) + L".dat",
                       content);
      }
    }
  }

  [[nodiscard]] DisturbedRun RunOf(const std::wstring& arguments) {
    return {.prepare =
                [this] {
                  hub_.StageRelease();
                  PutTracesOfUse();
                  PutFolders(hub_.Base(), "old");
                  PutFolders(hub_.App(), "new");
                  hub_.PutManager(hub_.Module(), "2.0.0");
                },
            .executable = hub_.Manager(),
            .arguments = arguments,
            .fewest_moments = IsLongTestWanted() ? kFewestMoments : kFewestMoments / kStride};
  }
};

TEST_F(RestartLargeProductEndToEndTest, FinalUpdateCanBeEndedBeforeAnyChange) {
  EndAndRestartAtEveryChange(RunOf(L"-final_update"), kStride);
}

TEST_F(RestartLargeProductEndToEndTest, InstallCanBeEndedBeforeAnyChange) {
  EndAndRestartAtEveryChange(RunOf(L"-install"), kStride);
}

}  // namespace
}  // namespace nhupdate_test
