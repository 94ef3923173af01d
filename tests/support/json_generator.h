#pragma once

// Texts for readers of JSON: well-formed ones, ones with small damages, and plain noise. The same
// seed gives the same texts everywhere.

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
  void AddValue(int depth);
  void AddWhitespace();
  void AddNumber();
  void AddLiteral();
  void AddString();
  void AddElement(int depth);
  void AddArray(int depth);
  void AddObject(int depth);
  void AddAnyOf(std::wstring_view units, int count);

  std::mt19937 engine_;
  std::wstring text_;  // what is being made
};

}  // namespace nhupdate_test
