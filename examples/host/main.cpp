// An example of the program that calls the updater: Nimba Hub, reduced to how it updates itself.

#include <optional>
#include <string>
#include <vector>

#include "helper.h"
#include "product.h"
#include "settings.h"
#include "windows_api.h"

#include <shellapi.h>  // needs <windows.h> first

namespace {

std::vector<std::wstring> Arguments() {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  if (arguments == nullptr) {
    return {};
  }
  std::vector<std::wstring> copies(arguments + 1, arguments + count);
  ::LocalFree(arguments);
  return copies;
}

nimba_hub::HostEnd Run() {
  const std::optional<nimba_hub::Settings> settings = nimba_hub::ReadSettings(Arguments());
  if (!settings) {
    return nimba_hub::HostEnd::kNotUnderstood;
  }
  return settings->is_helper ? nimba_hub::RunHelper(*settings) : nimba_hub::RunProduct(*settings);
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return static_cast<int>(Run());
}
