// One call for each name; it is compiled once for each with that name defined. All but the first
// must be refused by the compiler (see CMakeLists.txt).

#include <string>

#include "base/format.h"

using nhupdate::Format;

extern const wchar_t* run_time_text;
extern int count;

#if defined(ACCEPTED)
const auto kText = Format(L"%s %s %d %02d %%", std::wstring(L"text"), L"literal", 5, 7U);
#elif defined(NUMBER_FOR_TEXT)
const auto kText = Format(L"%s", 5);
#elif defined(TEXT_FOR_NUMBER)
const auto kText = Format(L"%d", std::wstring());
#elif defined(TEXT_FOR_PADDED_NUMBER)
const auto kText = Format(L"%02d", L"text");
#elif defined(TOO_FEW_ARGUMENTS)
const auto kText = Format(L"%d %d", 5);
#elif defined(TOO_MANY_ARGUMENTS)
const auto kText = Format(L"%d", 5, 6);
#elif defined(NO_PLACEHOLDER_AT_ALL)
const auto kText = Format(L"text", 5);
#elif defined(NARROW_TEXT)
const auto kText = Format(L"%s", "text");
#elif defined(NARROW_STRING)
const auto kText = Format(L"%s", std::string());
#elif defined(WIDE_64_BIT_NUMBER)
const auto kText = Format(L"%d", 5LL);
#elif defined(SHORT_NUMBER)
const auto kText = Format(L"%d", static_cast<short>(5));
#elif defined(TRUTH_VALUE)
const auto kText = Format(L"%d", true);
#elif defined(CHARACTER)
const auto kText = Format(L"%d", L'x');
#elif defined(LONG_CHARACTER)
const auto kText = Format(L"%d", U'x');
#elif defined(FLOATING_POINT_NUMBER)
const auto kText = Format(L"%d", 5.0);
#elif defined(NULL_POINTER)
const auto kText = Format(L"%s", nullptr);
#elif defined(UNKNOWN_PLACEHOLDER)
const auto kText = Format(L"%x", 5);
#elif defined(OTHER_WIDTH)
const auto kText = Format(L"%03d", 5);
#elif defined(WRITING_PLACEHOLDER)
const auto kText = Format(L"%n", &count);
#elif defined(PERCENT_SIGN_AT_THE_END)
const auto kText = Format(L"100%");
#elif defined(PLACEHOLDER_CUT_OFF)
const auto kText = Format(L"%02", 5);
#elif defined(RUN_TIME_FORMAT)
const auto kText = Format(run_time_text);
#elif defined(RUN_TIME_STRING_AS_FORMAT)
const auto kText = Format(std::wstring(run_time_text));
#else
#error "No such case."
#endif
