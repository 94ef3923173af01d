#include "settings.h"

#include <array>
#include <cwchar>

#include "windows_api.h"

namespace nimba_hub {

namespace {

constexpr wchar_t kProgram[] = L"--program";
constexpr wchar_t kHelper[] = L"--finish-update";

struct TimeOption {
  const wchar_t* name;
  std::chrono::seconds Settings::*value;
};
constexpr std::array<TimeOption, 4> kTimeOptions = {{
    {L"--first-check", &Settings::first_check},
    {L"--check-every", &Settings::check_every},
    {L"--offer-again", &Settings::offer_again},
    {L"--longest-wait", &Settings::longest_wait},
}};

std::optional<std::chrono::seconds> ReadSeconds(const std::wstring& text) {
  constexpr unsigned long kMostSeconds = 366UL * 24 * 60 * 60;
  const bool is_number = text.find_first_not_of(L"0123456789") == std::wstring::npos;
  const unsigned long seconds = std::wcstoul(text.c_str(), nullptr, 10);
  if (text.empty() || !is_number || seconds > kMostSeconds) {
    return std::nullopt;
  }
  return std::chrono::seconds(seconds);
}

bool ReadTime(const std::wstring& name, const std::wstring& value, Settings& settings) {
  for (const TimeOption& option : kTimeOptions) {
    if (name == option.name) {
      const std::optional<std::chrono::seconds> seconds = ReadSeconds(value);
      settings.*option.value = seconds.value_or(settings.*option.value);
      return seconds.has_value();
    }
  }
  return false;
}

}  // namespace

std::optional<Settings> ReadSettings(const std::vector<std::wstring>& arguments) {
  Settings settings;
  settings.program = OwnProgram();
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::wstring& name = arguments[index];
    if (name == kHelper) {
      settings.is_helper = true;
      continue;
    }
    if (++index == arguments.size()) {
      return std::nullopt;
    }
    if (name == kProgram) {
      settings.program = arguments[index];
    } else if (!ReadTime(name, arguments[index], settings)) {
      return std::nullopt;
    }
  }
  return settings.program.is_absolute() ? std::optional(settings) : std::nullopt;
}

std::wstring ToArguments(const Settings& settings) {
  // The path of a file never ends with a backslash, which would spoil the quotation mark.
  std::wstring text = std::wstring(kProgram) + L" \"" + settings.program.wstring() + L"\"";
  for (const TimeOption& option : kTimeOptions) {
    text +=
        std::wstring(L" ") + option.name + L" " + std::to_wstring((settings.*option.value).count());
  }
  return settings.is_helper ? text + L" " + kHelper : text;
}

std::filesystem::path OwnProgram() {
  constexpr std::size_t kLongestPath = 32767;
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

}  // namespace nimba_hub
