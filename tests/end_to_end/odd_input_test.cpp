#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class OddInputEndToEndTest : public EndToEndTest {
 protected:
  OddInputEndToEndTest() {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
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
  hub_.StageRelease();
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes.substr(0, 20) + "... " + std::to_string(bytes.size()));
    ::DeleteFileW(hub_.LogFile().c_str());
    WriteTexts(bytes);

    const ProgramRun run = Run(L"-download");

    EXPECT_EQ(run.exit_code, 12U);
    EXPECT_THAT(Transcript(), testing::HasSubstr("\n2|Total 0 strings loaded.\n"));
  }
}

TEST_F(OddInputEndToEndTest, ShowsTheKeysWhenThereAreNoTexts) {
  ::DeleteFileW((hub_.Module() + L"\\Config\\NHUpdateManager.Default.json").c_str());
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
  hub_.Script(L"NIMBAHUB", {.exit_code = 1});

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 13U);
  ASSERT_EQ(run.boxes.size(), 1U);
  EXPECT_EQ(run.boxes[0].caption, "KEY_UPDATE_TITLE");
  EXPECT_EQ(run.boxes[0].text, "KEY_FAIL_COMMON_ERROR");
  EXPECT_THAT(Transcript(), testing::HasSubstr(
                                "\n4|Fail to open string file : "
                                "{base}\\NHUpdateManager\\Config\\NHUpdateManager.Default.json\n"));
}

TEST_F(OddInputEndToEndTest, HostileVersionFilesAreJustOtherVersions) {
  WriteFileBytes(hub_.App() + L"\\Version.txt",
                 "[ProductVersion]\r\nVersion=%s%n" + std::string(100'000, 'A') + "\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_THAT(
      Transcript(),
      testing::HasSubstr("2|Version mismatch between installed (1.0.0) and app folder (%s%n" +
                         std::string(251, 'A') + ").\n"));
}

TEST_F(OddInputEndToEndTest, TakesTheLanguageFromSteamsSettingThroughTheMappingFile) {
  constexpr wchar_t kLanguage[] = L"tchinese";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam", L"Language", REG_SZ, kLanguage,
                    sizeof(kLanguage));
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 "[Language]\r\nTCHINESE = \"zh_TW\"\r\n");
  WriteFileBytes(hub_.Module() + L"\\Config\\NHUpdateManager.zh.json",
                 "\xEF\xBB\xBF{\"A\":\"x\" \"B\":1}");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_THAT(Transcript(), testing::StartsWith(R"(2|Process elevated.
2|Found steam language setting : tchinese
2|Mapping steam language to zh-TW.
2|Load strings from {base}\NHUpdateManager\Config\NHUpdateManager.zh.json
2|Total 1 strings loaded.
)"));
}

TEST_F(OddInputEndToEndTest, AHostileMappingFileFallsBackToTheSystemsLanguage) {
  constexpr wchar_t kLanguage[] = L"a]=;%s";
  ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam", L"Language", REG_SZ, kLanguage,
                    sizeof(kLanguage));
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 std::string(1'000'000, '[') + "\r\n[Language\r\n=x\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_THAT(Transcript(), testing::StartsWith(R"(2|Process elevated.
2|Found steam language setting : a]=;%s
2|Steam language mapping fail.
2|Found System language setting : )"));
}

TEST_F(OddInputEndToEndTest, WorksFromALongPath) {
  const std::wstring deep = hub_.Scratch() + L"\\" + std::wstring(60, L'\u00E9');
  const std::wstring module = deep + L"\\b\\NHUpdateManager";
  ASSERT_LT(module.size() + 30, 260U);
  hub_.PutManager(module, "1.0.0");

  const ProgramRun run =
      RunToTheEnd({.executable = module + L"\\NHUpdateManager.exe", .arguments = L"-download"});

  EXPECT_EQ(run.exit_code, 14U);
  EXPECT_THAT(Transcript(), testing::EndsWith("\\b\\Updater\\Updater.exe\n2|Return 14\n"));
}

}  // namespace
}  // namespace nhupdate_test
