#include "text/string_file.h"

#include <cstddef>

#include "base/existence.h"
#include "base/strings.h"

namespace nhupdate {

namespace {

std::wstring StringFilePath(const std::wstring& configuration_folder,
                            const std::wstring& language) {
  return configuration_folder + L"\\NHUpdateManager." + language + L".json";
}

}  // namespace

std::wstring ChooseStringFile(const std::wstring& configuration_folder,
                              const std::wstring& language) {
  std::wstring own = StringFilePath(configuration_folder, language);
  if (Exists(own)) {
    return own;
  }
  const std::size_t hyphen = language.find(L'-');
  if (hyphen != std::wstring::npos && hyphen > 0) {
    const std::wstring short_code = LeftPart(language, static_cast<int>(hyphen));
    std::wstring general = StringFilePath(configuration_folder, short_code);
    if (Exists(general)) {
      return general;
    }
  }
  return StringFilePath(configuration_folder, L"Default");
}

}  // namespace nhupdate
