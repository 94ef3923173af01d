#pragma once

// Texts for readers of JSON: well-formed ones, ones with small damages, and plain noise. The same
// seed gives the same texts in every run of the same build.

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace nhupdate_test {

class CJsonGenerator {
 public:
  explicit CJsonGenerator(std::uint32_t seed) : engine_(seed) {}

  // A value by the dialect's grammar, with containers nested `depth` levels deep at most.
  [[nodiscard]] std::wstring Value(int depth);

  // Such a value with up to three damages: units removed, doubled, exchanged, inserted or cut off.
  [[nodiscard]] std::wstring DamagedValue(int depth);

  // That many units, taken at random from NUL and, mostly, those that mean something in JSON.
  [[nodiscard]] std::wstring Noise(int units);

  // A number from 0 to limit - 1.
  [[nodiscard]] int Below(int limit);

 private:
  [[nodiscard]] std::wstring Whitespace();
  [[nodiscard]] std::wstring Number();
  [[nodiscard]] std::wstring Literal();
  [[nodiscard]] std::wstring String();
  [[nodiscard]] std::wstring Array(int depth);
  [[nodiscard]] std::wstring Object(int depth);
  [[nodiscard]] std::wstring AnyOf(std::wstring_view units, int count);

  std::mt19937 engine_;
};

}  // namespace nhupdate_test
