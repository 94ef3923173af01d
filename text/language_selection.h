#pragma once

// Which language the user is spoken to in.

#include <string>

#include "log/log.h"

namespace nhupdate {

// The language code of Steam's setting, else the first preferred language of Windows, else
// "Default". The folder holds the list of the codes that belong to Steam's names of languages.
[[nodiscard]] std::wstring SelectLanguage(const std::wstring& configuration_folder,
                                          const CLog& log);

}  // namespace nhupdate
