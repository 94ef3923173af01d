#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

constexpr char kTexts[] = "{base}\\NHUpdateManager\\Config\\NHUpdateManager.Default.json";

class OddInputEndToEndTest : public EndToEndTest {
 protected:
  OddInputEndToEndTest() {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
    hub_.StageRelease();
  }

  void WriteTexts(const std::string& bytes) const {
    WriteFileBytes(hub_.Module() + L"\\Config\\NHUpdateManager.Default.json", bytes);
  }
};

TEST_F(OddInputEndToEndTest, HostileStringFilesOnlyCostTheTexts) {
  std::string nested = "{\"a\":" + std::string(1'000'000, '[') + std::string(1'000'000, ']') + "}";
  const std::string cases[] = {
      nested,
      std::string(1'000'000, '['),
      "{\"a\":" + std::string(3'000'000, '9') + "}",
      std::string(100'000, '\0'),
      "\xFF\xFE{",
      "{\"KEY_UPDATE_TITLE\":",
      "",
  };
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes.substr(0, 20) + "... " + std::to_string(bytes.size()));
    ::DeleteFileW(hub_.LogFile().c_str());
    WriteTexts(bytes);

    const ProgramRun run = Run(L"-download");

    EXPECT_EQ(run.exit_code, 12U);
    EXPECT_EQ(Transcript(), kElevated + LanguageWithoutSteam() + TextsLoaded(kTexts, 0) +
                                AnotherVersionDownloaded("2.0.0"));
  }
}

TEST_F(OddInputEndToEndTest, ABoxShowsTheKeysWhenThereAreNoTexts) {
  ::DeleteFileW((hub_.Module() + L"\\Config\\NHUpdateManager.Default.json").c_str());
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
  hub_.Script(L"NIMBAHUB", {.exit_code = 1});

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 13U);
  ExpectErrorBox(run, "KEY_FAIL_COMMON_ERROR", "KEY_UPDATE_TITLE");
  EXPECT_EQ(Transcript(), kElevated + LanguageWithoutSteam() + "2|Load strings from " + kTexts +
                              "\n4|Fail to open string file : " + kTexts + "\n" +
                              RefreshFoundNothing() + LaunchHubUpdate() +
                              R"(2|Launch updater success for update.
2|Updater exit = 1
2|Update fail.
)" + kConfigDeleted + "2|Return 13\n");
}

TEST_F(OddInputEndToEndTest, HostileVersionFilesAreJustOtherVersions) {
  WriteFileBytes(hub_.App() + L"\\Version.txt",
                 "[ProductVersion]\r\nVersion=%s%n" + std::string(100'000, 'A') + "\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), StartUp() + AnotherVersionDownloaded("%s%n" + std::string(251, 'A')));
}

TEST_F(OddInputEndToEndTest, TheLanguageComesFromSteamsSettingThroughTheMappingFile) {
  constexpr wchar_t kLanguage[] = L"tchinese";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam", L"Language", REG_SZ, kLanguage,
                    sizeof(kLanguage));
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 "[Language]\r\nTCHINESE = \"zh_TW\"\r\n");
  WriteFileBytes(hub_.Module() + L"\\Config\\NHUpdateManager.zh.json",
                 "\xEF\xBB\xBF{\"A\":\"x\" \"B\":1}");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), std::string(kElevated) + R"(2|Found steam language setting : tchinese
2|Mapping steam language to zh-TW.
)" + TextsLoaded("{base}\\NHUpdateManager\\Config\\NHUpdateManager.zh.json", 1) +
                              AnotherVersionDownloaded("2.0.0"));
}

TEST_F(OddInputEndToEndTest, AHostileMappingFileFallsBackToTheSystemsLanguage) {
  constexpr wchar_t kLanguage[] = L"a]=;%s";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam", L"Language", REG_SZ, kLanguage,
                    sizeof(kLanguage));
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 std::string(1'000'000, '[') + "\r\n[Language\r\n=x\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), std::string(kElevated) + R"(2|Found steam language setting : a]=;%s
2|Steam language mapping fail.
)" + SystemLanguageFound() + TextsLoaded(kTexts, kTextCount) +
                              AnotherVersionDownloaded("2.0.0"));
}

}  // namespace
}  // namespace nhupdate_test
