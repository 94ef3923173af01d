#pragma once

// Which of the string files beside the program serves a language.

#include <string>

namespace nhupdate {

// The file of the language itself; if there is none, that of the part before the first "-" (pt for
// pt-BR); if there is none either, that of "Default", whether or not it exists.
[[nodiscard]] std::wstring ChooseStringFile(const std::wstring& configuration_folder,
                                            const std::wstring& language);

}  // namespace nhupdate
