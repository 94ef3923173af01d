#pragma once

// The string files beside the program: which of them serves a language, and what is in it.

#include <optional>
#include <string>

namespace nhupdate {

// The file of the language itself; if there is none, that of the part before the first "-" (pt for
// pt-BR); if there is none either, that of "Default", whether or not it exists.
[[nodiscard]] std::wstring ChooseStringFile(const std::wstring& configuration_folder,
                                            const std::wstring& language);

struct StringFileText {
  std::wstring text;   // decoded, without a byte order mark
  int byte_count = 0;  // of the whole file: never fewer than the text has units
};

// Reads and decodes the file, in one go and while others may write it. What isn't UTF-8 becomes
// replacement characters. Nothing when the file can't be opened or read, or has 2 GiB and more.
[[nodiscard]] std::optional<StringFileText> ReadStringFile(const std::wstring& path);

}  // namespace nhupdate
