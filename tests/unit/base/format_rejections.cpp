// One piece of code for each name; it is compiled once for each with that name defined. All but
// the first must be refused by the compiler (see CMakeLists.txt).

#include <string>

#include "base/format.h"

using nhupdate::Format;

#if defined(ACCEPTED)
std::wstring Text() {
  const std::wstring text = L"text";
  return Format(L"%s %s %d %02d %%", text, L"literal", 5, 7U);
}
#elif defined(NUMBER_FOR_TEXT)
std::wstring Text() {
  return Format(L"%s", 5);
}
#elif defined(TEXT_FOR_NUMBER)
std::wstring Text() {
  return Format(L"%d", std::wstring());
}
#elif defined(TEXT_FOR_PADDED_NUMBER)
std::wstring Text() {
  return Format(L"%02d", L"text");
}
#elif defined(TOO_FEW_ARGUMENTS)
std::wstring Text() {
  return Format(L"%d %d", 5);
}
#elif defined(TOO_MANY_ARGUMENTS)
std::wstring Text() {
  return Format(L"%d", 5, 6);
}
#elif defined(NO_PLACEHOLDER_AT_ALL)
std::wstring Text() {
  return Format(L"text", 5);
}
#elif defined(NARROW_TEXT)
std::wstring Text() {
  return Format(L"%s", "text");
}
#elif defined(NARROW_STRING)
std::wstring Text() {
  return Format(L"%s", std::string());
}
#elif defined(WIDE_64_BIT_NUMBER)
std::wstring Text() {
  return Format(L"%d", 5LL);
}
#elif defined(SHORT_NUMBER)
std::wstring Text() {
  return Format(L"%d", static_cast<short>(5));
}
#elif defined(TRUTH_VALUE)
std::wstring Text() {
  return Format(L"%d", true);
}
#elif defined(CHARACTER)
std::wstring Text() {
  return Format(L"%d", L'x');
}
#elif defined(LONG_CHARACTER)
std::wstring Text() {
  return Format(L"%d", U'x');
}
#elif defined(FLOATING_POINT_NUMBER)
std::wstring Text() {
  return Format(L"%d", 5.0);
}
#elif defined(NULL_POINTER)
std::wstring Text() {
  return Format(L"%s", nullptr);
}
#elif defined(UNKNOWN_PLACEHOLDER)
std::wstring Text() {
  return Format(L"%x", 5);
}
#elif defined(OTHER_WIDTH)
std::wstring Text() {
  return Format(L"%03d", 5);
}
#elif defined(WRITING_PLACEHOLDER)
std::wstring Text(int& count) {
  return Format(L"%n", &count);
}
#elif defined(PERCENT_SIGN_AT_THE_END)
std::wstring Text() {
  return Format(L"100%");
}
#elif defined(PLACEHOLDER_CUT_OFF)
std::wstring Text() {
  return Format(L"%02", 5);
}
#elif defined(RUN_TIME_FORMAT)
std::wstring Text(const wchar_t* format) {
  return Format(format);
}
#elif defined(RUN_TIME_STRING_AS_FORMAT)
std::wstring Text(const std::wstring& format) {
  return Format(format);
}
#else
#error "No such case."
#endif
