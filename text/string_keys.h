#pragma once

// The keys of the texts that a user gets to see. Every string file has all of them.

namespace nhupdate {

inline constexpr wchar_t kKeyUpdateTitle[] = L"KEY_UPDATE_TITLE";
inline constexpr wchar_t kKeyFailCommonError[] = L"KEY_FAIL_COMMON_ERROR";
inline constexpr wchar_t kKeyFailNeedStopNHUpdateManager[] = L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER";

}  // namespace nhupdate
