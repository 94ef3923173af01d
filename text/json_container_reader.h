#pragma once

// Reads one array or object with all that is nested in it. The containers that are still open stand
// on a stack of this class's own, so the depth of the text costs memory and not stack.

#include <cstdint>
#include <string>
#include <vector>

#include "text/json_scanner.h"
#include "text/json_value.h"

namespace nhupdate {

class CJsonContainerReader {
 public:
  explicit CJsonContainerReader(CJsonScanner& scanner) : scanner_(scanner) {}

  // Whether the unit opens an array or an object.
  [[nodiscard]] static bool IsOpening(wchar_t unit) { return unit == L'{' || unit == L'['; }

  // Reads the array or object whose opening bracket stands at `start`. Returns the number of units
  // consumed, or a negative number and leaves the value alone.
  [[nodiscard]] int Read(JsonValue& value, JsonKind kind, int start);

 private:
  struct OpenContainer {
    JsonKind kind = JsonKind::kArray;
    int start = 0;        // of its opening bracket
    int first_child = 0;  // among the children
  };

  [[nodiscard]] bool Open(JsonKind kind, int position);
  [[nodiscard]] JsonValue Close();
  [[nodiscard]] JsonValue TakeArray(int first_child);
  [[nodiscard]] JsonValue TakeObject(int first_child);
  [[nodiscard]] bool ReadKey(int& position);
  [[nodiscard]] int SkipComma(int position) const;
  [[nodiscard]] int Fail(int position, std::int64_t magnitude);

  CJsonScanner& scanner_;
  // From the outermost to the innermost; and what has been read in all of them so far. A container
  // is made when it ends, since it is known then how much is in it.
  std::vector<OpenContainer> open_;
  JsonValue::Array children_;
  std::vector<std::wstring>
      keys_;  // of the objects' children, and of the member being read in each
};

}  // namespace nhupdate
