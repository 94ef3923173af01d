#include "text/language_selection.h"

#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "base/registry.h"
#include "base/strings.h"
#include "base/windows.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

constexpr wchar_t kSteamKey[] = L"SOFTWARE\\Valve\\Steam";
constexpr wchar_t kSteamLanguageValue[] = L"Language";
constexpr wchar_t kMappingSection[] = L"Language";

// The language that the user chose in Steam, as Steam names it; empty without Steam.
std::wstring SteamLanguage() {
  std::wstring language;
  std::ignore = GetRegString(kSteamKey, kSteamLanguageValue, language);  // absent reads as empty
  return language;
}

// The code that belongs to Steam's name of a language; empty without an entry for it.
std::wstring MapSteamLanguage(const std::wstring& mapping_file,
                              const std::wstring& steam_language) {
  std::array<wchar_t, 256> buffer = {};
  ::GetPrivateProfileStringW(kMappingSection, steam_language.c_str(), L"", buffer.data(),
                             static_cast<DWORD>(buffer.size()),
                             PathForWindows(mapping_file).c_str());
  std::wstring code = buffer.data();
  std::ignore = ReplaceAll(code, L"_", L"-");  // zh_TW means zh-TW
  return code;
}

// The first of the user's preferred languages of Windows itself.
std::optional<std::wstring> SystemLanguage() {
  ULONG count = 0;
  ULONG units = 0;
  if (!::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &units)) {
    return std::nullopt;
  }
  // One more than asked for, so that even an empty list has a terminator.
  std::vector<wchar_t> names(units + 1, L'\0');
  if (!::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &units)) {
    return std::nullopt;
  }
  return std::wstring(names.data());
}

}  // namespace

std::wstring SelectLanguage(const std::wstring& configuration_folder, const CLog& log) {
  const std::wstring steam_language = SteamLanguage();
  if (steam_language.empty()) {
    log.Write(LogLevel::kInformation, L"Steam language setting not found.");
  } else {
    log.Write(LogLevel::kInformation, L"Found steam language setting : %s", steam_language);
    std::wstring mapped =
        MapSteamLanguage(configuration_folder + L"\\SteamLanguageMapping.ini", steam_language);
    if (!mapped.empty()) {
      log.Write(LogLevel::kInformation, L"Mapping steam language to %s.", mapped);
      return mapped;
    }
    log.Write(LogLevel::kInformation, L"Steam language mapping fail.");
  }

  const std::optional<std::wstring> system_language = SystemLanguage();
  if (system_language) {
    log.WriteText(LogLevel::kInformation, L"Found System language setting : " + *system_language);
    return *system_language;
  }
  log.Write(LogLevel::kInformation, L"Use default language.");
  return L"Default";
}

}  // namespace nhupdate
