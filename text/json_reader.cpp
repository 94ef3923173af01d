#include "text/json_reader.h"

#include <cstdint>
#include <utility>

#include "text/json_container_reader.h"
#include "text/json_scanner.h"

namespace nhupdate {

namespace {

bool CanBeRead(const wchar_t* text, int bound) {
  return text != nullptr && bound >= 1;
}

int ParseContainer(JsonValue& value, JsonKind kind, const wchar_t* text, int bound) {
  if (!CanBeRead(text, bound)) {
    return -1;
  }
  CJsonScanner scanner(text, bound);
  return CJsonContainerReader(scanner).Read(value, kind, 0);
}

}  // namespace

int ParseValue(JsonValue& value, const wchar_t* text, int bound) {
  if (!CanBeRead(text, bound)) {
    return -1;
  }
  CJsonScanner scanner(text, bound);
  const int skipped = scanner.SkipWhitespace(0);
  const wchar_t unit = scanner.UnitAt(skipped);
  int consumed = 0;
  if (CJsonContainerReader::IsOpening(unit)) {
    const JsonKind kind = unit == L'{' ? JsonKind::kObject : JsonKind::kArray;
    consumed = CJsonContainerReader(scanner).Read(value, kind, skipped);
  } else if (scanner.BeginsScalar(skipped)) {
    consumed = scanner.ParseScalar(value, skipped);
  } else {
    return -skipped - 1;
  }
  const std::int64_t total = std::int64_t{consumed} + skipped;
  return total > 0 ? static_cast<int>(total) : consumed < 0 ? consumed : -1;
}

int ParseObject(JsonValue& value, const wchar_t* text, int bound) {
  return ParseContainer(value, JsonKind::kObject, text, bound);
}

int ParseArray(JsonValue& value, const wchar_t* text, int bound) {
  return ParseContainer(value, JsonKind::kArray, text, bound);
}

int ParseString(JsonValue& value, const wchar_t* text, int bound) {
  return CanBeRead(text, bound) ? CJsonScanner(text, bound).ParseString(value, 0) : -1;
}

int ParseNumber(JsonValue& value, const wchar_t* text, int bound) {
  return CanBeRead(text, bound) ? CJsonScanner(text, bound).ParseNumber(value, 0) : -1;
}

int ParseLiteral(JsonValue& value, const wchar_t* text, int bound) {
  return CanBeRead(text, bound) ? CJsonScanner(text, bound).ParseLiteral(value, 0) : -1;
}

int ScanString(const wchar_t* text, int bound, std::wstring& out) {
  if (!CanBeRead(text, bound)) {
    return -1;
  }
  std::wstring scanned;
  const int consumed = CJsonScanner(text, bound).ScanString(0, scanned);
  if (consumed > 0) {
    out = std::move(scanned);
  }
  return consumed;
}

void FreeValue(JsonValue& value) {
  value.Clear();
}

}  // namespace nhupdate
