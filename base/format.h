#pragma once

// Wide printf-style formatting whose format is checked against its arguments at compile time. A
// text that is only known at run time can't become a format, so a "%" in a path can't spoil a
// message. Known placeholders: %s (wide text), %d and %02d (32-bit integers, shown signed), %%.

#include <array>
#include <cstddef>
#include <string>
#include <type_traits>

namespace nhupdate {

namespace format_detail {

enum class ArgumentKind { kText, kNumber, kUnsupported };

template <typename Argument>
consteval ArgumentKind KindOf() {
  using Plain = std::decay_t<Argument>;
  if constexpr (std::is_same_v<Plain, std::wstring> || std::is_same_v<Plain, const wchar_t*> ||
                std::is_same_v<Plain, wchar_t*>) {
    return ArgumentKind::kText;
  } else if constexpr (std::is_integral_v<Plain> && sizeof(Plain) == sizeof(int) &&
                       !std::is_same_v<Plain, bool> && !std::is_same_v<Plain, wchar_t> &&
                       !std::is_same_v<Plain, char32_t>) {
    return ArgumentKind::kNumber;
  } else {
    return ArgumentKind::kUnsupported;
  }
}

template <typename... Arguments>
consteval bool FormatFitsArguments(const wchar_t* format) {
  constexpr std::size_t kCount = sizeof...(Arguments);
  constexpr std::array<ArgumentKind, kCount> kKinds = {KindOf<Arguments>()...};
  std::size_t next = 0;
  for (const wchar_t* unit = format; *unit != L'\0'; ++unit) {
    if (*unit != L'%') {
      continue;
    }
    ++unit;
    if (*unit == L'%') {
      continue;
    }
    if (unit[0] == L'0' && unit[1] == L'2' && unit[2] == L'd') {
      unit += 2;
    }
    const ArgumentKind wanted = *unit == L's'   ? ArgumentKind::kText
                                : *unit == L'd' ? ArgumentKind::kNumber
                                                : ArgumentKind::kUnsupported;
    if (wanted == ArgumentKind::kUnsupported || next == kCount || kKinds[next] != wanted) {
      return false;
    }
    ++next;
  }
  return next == kCount;
}

// Never defined: reaching it while a format is checked is the compile error.
void FormatDoesNotFitItsArguments();

// What a printf function takes in place of the argument.
template <typename Argument>
auto ToPrintf(const Argument& argument) {
  if constexpr (std::is_same_v<Argument, std::wstring>) {
    return argument.c_str();
  } else if constexpr (KindOf<Argument>() == ArgumentKind::kText) {
    return static_cast<const wchar_t*>(argument);
  } else {
    return argument;
  }
}

[[nodiscard]] std::wstring FormatUnchecked(const wchar_t* format, ...);

}  // namespace format_detail

template <typename... Arguments>
class BasicFormatString {
 public:
  // Implicit, so that a literal can stand where a checked format is wanted.
  consteval BasicFormatString(const wchar_t* text) : text_(text) {
    if (!format_detail::FormatFitsArguments<Arguments...>(text)) {
      format_detail::FormatDoesNotFitItsArguments();
    }
  }

  [[nodiscard]] constexpr const wchar_t* Text() const { return text_; }

 private:
  const wchar_t* text_;
};

template <typename... Arguments>
using FormatString = BasicFormatString<std::type_identity_t<Arguments>...>;

// Returns the formatted text, of any length.
template <typename... Arguments>
[[nodiscard]] std::wstring Format(FormatString<Arguments...> format,
                                  const Arguments&... arguments) {
  return format_detail::FormatUnchecked(format.Text(), format_detail::ToPrintf(arguments)...);
}

}  // namespace nhupdate
