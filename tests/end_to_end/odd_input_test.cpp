#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class OddInputEndToEndTest : public EndToEndTest {
 protected:
  OddInputEndToEndTest() {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
    hub_.StageRelease();
  }

  static void SetSteamLanguage(const std::wstring& language) {
    ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\Valve\\Steam", L"Language", REG_SZ,
                      language.c_str(),
                      static_cast<DWORD>((language.size() + 1) * sizeof(wchar_t)));
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
    RemoveTree(hub_.DataFolder() + L"\\Corvane");
    WriteTexts(bytes);

    ExpectGoldenRun(12, Run(L"-download"));
  }
}

TEST_F(OddInputEndToEndTest, ABoxShowsTheKeysWhenThereAreNoTexts) {
  ::DeleteFileW((hub_.Module() + L"\\Config\\NHUpdateManager.Default.json").c_str());
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
  hub_.Script(L"NIMBAHUB", {.exit_code = 1});

  ExpectGoldenRun(13, Run(L"-update"));
}

TEST_F(OddInputEndToEndTest, HostileVersionFilesAreJustOtherVersions) {
  WriteFileBytes(hub_.App() + L"\\Version.txt",
                 "[ProductVersion]\r\nVersion=%s%n" + std::string(100'000, 'A') + "\r\n");

  ExpectGoldenRun(12, Run(L"-download"));
}

TEST_F(OddInputEndToEndTest, TheLanguageComesFromSteamsSettingThroughTheMappingFile) {
  SetSteamLanguage(L"tchinese");
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 "[Language]\r\nTCHINESE = \"zh_TW\"\r\n");
  WriteFileBytes(hub_.Module() + L"\\Config\\NHUpdateManager.zh.json",
                 "\xEF\xBB\xBF{\"A\":\"x\" \"B\":1}");

  ExpectGoldenRun(12, Run(L"-download"));
}

TEST_F(OddInputEndToEndTest, AHostileMappingFileFallsBackToTheSystemsLanguage) {
  SetSteamLanguage(L"a]=;%s");
  WriteFileBytes(hub_.Module() + L"\\Config\\SteamLanguageMapping.ini",
                 std::string(1'000'000, '[') + "\r\n[Language\r\n=x\r\n");

  ExpectGoldenRun(12, Run(L"-download"));
}

}  // namespace
}  // namespace nhupdate_test
