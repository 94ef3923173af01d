// The program is ended while Windows is copying a file for it, which is long enough for that.

#include <cstdint>
#include <string>

#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

constexpr std::uint64_t kSize = 64 * 1024 * 1024;

class RestartCopyEndToEndTest : public RestartTest {
 protected:
  void PutLongFile(const std::wstring& path) const { WriteFileBytes(path, long_text_); }

 private:
  const std::string long_text_ = std::string(kSize, 'x');
};

TEST_F(RestartCopyEndToEndTest, AFileOfTheProductCanBeLeftHalfCopied) {
  EndAndRestartInTheCopyOf({.prepare =
                                [this] {
                                  hub_.StageRelease();
                                  PutLongFile(hub_.App() + L"\\NHHub.exe");
                                },
                            .executable = hub_.Manager(),
                            .arguments = L"-final_update"},
                           hub_.Base() + L"\\NHHub.exe", kSize);
}

TEST_F(RestartCopyEndToEndTest, AFileBelowAFolderCanBeLeftHalfCopied) {
  EndAndRestartInTheCopyOf({.prepare =
                                [this] {
                                  hub_.StageRelease();
                                  PutLongFile(hub_.App() + L"\\Plugins\\Cameras\\cam.dll");
                                },
                            .executable = hub_.Manager(),
                            .arguments = L"-install"},
                           hub_.Base() + L"\\Plugins\\Cameras\\cam.dll", kSize);
}

TEST_F(RestartCopyEndToEndTest, AFileOfTheProgramCanBeLeftHalfCopied) {
  EndAndRestartInTheCopyOf({.prepare =
                                [this] {
                                  hub_.StageRelease();
                                  PutLongFile(hub_.App() + L"\\NHUpdateManager\\help.dat");
                                },
                            .executable = hub_.StagedManager(),
                            .arguments = L"-self_update"},
                           hub_.Module() + L"\\help.dat", kSize);
}

TEST_F(RestartCopyEndToEndTest, AFileOfTheUpdaterCanBeLeftHalfCopied) {
  const std::wstring new_updater = hub_.Scratch() + L"\\Updater 2";
  PutLongFile(new_updater + L"\\updater.txt");

  EndAndRestartInTheCopyOf(
      {.prepare =
           [this, new_updater] {
             hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 0});
             hub_.Script(L"NIMBA_SOFTWARE", {.exit_code = 0, .new_updater = new_updater});
             hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
           },
       .executable = hub_.Manager(),
       .arguments = L"-update"},
      hub_.Updater() + L"\\updater.txt", kSize);
}

}  // namespace
}  // namespace nhupdate_test
