#include "install/failure_notice.h"

#include "base/error_box.h"
#include "text/string_keys.h"

namespace nhupdate {

void TellFailure(const StringTable& strings, const wchar_t* key) {
  ShowErrorBox(GetString(strings, kKeyUpdateTitle), GetString(strings, key));
}

void TellFailure(const StringTable& strings, const wchar_t* key, const std::wstring& path) {
  ShowErrorBox(GetString(strings, kKeyUpdateTitle), GetString(strings, key) + L"\n" + path);
}

}  // namespace nhupdate
