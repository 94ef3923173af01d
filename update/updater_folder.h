#pragma once

// Where the updater lies, seen from the folder of a product.

namespace nhupdate {

inline constexpr wchar_t kUpdaterFolder[] = L"\\Updater";

}  // namespace nhupdate
