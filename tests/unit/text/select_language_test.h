#pragma once

// A manager that selects a language, the settings it finds, and its records of that.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/preferred_languages.h"
#include "tests/support/steam_setting.h"

namespace nhupdate_test {

inline const std::wstring kNoSteam = L"2|Steam language setting not found.";
inline const std::wstring kNoMapping = L"2|Steam language mapping fail.";
inline const std::wstring kDefault = L"2|Use default language.";

[[nodiscard]] inline std::wstring FoundSteam(const std::wstring& language) {
  return L"2|Found steam language setting : " + language;
}

[[nodiscard]] inline std::wstring Mapped(const std::wstring& language) {
  return L"2|Mapping steam language to " + language + L".";
}

[[nodiscard]] inline std::wstring FoundSystem(const std::wstring& language) {
  return L"2|Found System language setting : " + language;
}

class SelectLanguageTest : public testing::Test {
 protected:
  SelectLanguageTest() { product_.Start(); }

  void WriteMapping(const std::string& lines) {
    WriteFileBytes(product_.Module() + L"\\Config\\SteamLanguageMapping.ini", lines);
  }

  // With the system's languages replaced.
  std::wstring Select(const std::vector<std::wstring>& system_languages, int failing_call = 0) {
    product_.ForgetRecords();
    const PreferredLanguages preferred(system_languages, failing_call);
    const std::wstring language = product_.Manager().SelectLanguage();
    system_calls_ = preferred.Arguments();
    return language;
  }

  InstalledProduct product_;
  SteamSetting steam_;
  std::vector<PreferredLanguages::Call> system_calls_;
};

}  // namespace nhupdate_test
