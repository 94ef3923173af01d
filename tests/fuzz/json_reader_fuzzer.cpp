// Every reader of JSON text must give exactly the result and the value that the naive one gives,
// whatever the text and the bound.
//
// An input is the text followed by two bytes: the second one tells whether a unit of the text is
// one byte or two, and whether the bound stands at the end of the text, before it or behind it; the
// first one tells by how much. Two blanks mean a unit for each byte and the bound at the end.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "tests/support/naive_json_reader.h"

namespace nhupdate_test {
namespace {

constexpr std::size_t kControlBytes = 2;

std::wstring UnitsOf(const std::uint8_t* data, std::size_t size, bool is_wide) {
  if (!is_wide) {
    return {data, data + size};
  }
  std::wstring text;
  for (std::size_t index = 0; index + 1 < size; index += 2) {
    text += static_cast<wchar_t>(data[index] | data[index + 1] << 8);
  }
  return text;
}

int BoundOf(const std::wstring& text, std::uint8_t mode, std::uint8_t distance) {
  const int length = static_cast<int>(text.size());
  switch (mode >> 1 & 3) {
    case 2:
      return length - distance;
    case 3:
      return length + distance;
    default:
      return length;
  }
}

}  // namespace
}  // namespace nhupdate_test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace nhupdate_test;
  if (size < kControlBytes) {
    return 0;
  }
  const std::uint8_t mode = data[size - 1];
  const std::uint8_t distance = data[size - 2];
  const std::wstring text = UnitsOf(data, size - kControlBytes, (mode & 1) != 0);
  const std::string disagreement = DisagreementOn(text, BoundOf(text, mode, distance));
  if (!disagreement.empty()) {
    std::cerr << disagreement << "\n";
    std::abort();
  }
  return 0;
}
