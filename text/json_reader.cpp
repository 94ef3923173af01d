#include "text/json_reader.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "text/json_scanner.h"

namespace nhupdate {

namespace {

bool OpensContainer(wchar_t unit) {
  return unit == L'{' || unit == L'[';
}

JsonKind KindOpenedBy(wchar_t unit) {
  return unit == L'{' ? JsonKind::kObject : JsonKind::kArray;
}

wchar_t ClosingUnit(JsonKind kind) {
  return kind == JsonKind::kObject ? L'}' : L']';
}

// Reads one array or object with all that is nested in it. The containers that are still open
// stand on a stack of this class's own, so the depth of the text costs memory and not stack.
class CContainerReader {
 public:
  explicit CContainerReader(const CJsonScanner& scanner) : scanner_(scanner) {}

  int Read(JsonValue& value, JsonKind kind, int start) {
    if (!Open(kind, start)) {
      return -1;
    }
    int position = start + 1;
    for (;;) {
      position = scanner_.SkipWhitespace(position);
      if (scanner_.UnitAt(position) == ClosingUnit(InnermostKind())) {
        std::unique_ptr<JsonValue> finished = Close();
        ++position;
        if (open_.empty()) {
          value = std::move(*finished);
          return position - start;
        }
        position = AddChild(std::move(finished), position);
        continue;
      }

      if (InnermostKind() == JsonKind::kObject && !ReadKey(position)) {
        return Fail(position, 0);
      }

      const wchar_t unit = scanner_.UnitAt(position);
      if (OpensContainer(unit)) {
        open_.back().child_start = position;
        if (!Open(KindOpenedBy(unit), position)) {
          return Fail(position, 1);
        }
        ++position;
        continue;
      }

      auto child = std::make_unique<JsonValue>();
      const int consumed = scanner_.ParseScalar(*child, position);
      if (consumed < 0) {
        return Fail(position, -std::int64_t{consumed});
      }
      position = AddChild(std::move(child), position + consumed);
    }
  }

 private:
  struct OpenContainer {
    std::unique_ptr<JsonValue> container;
    int start = 0;        // of its opening bracket
    int child_start = 0;  // of the nested container that is being read
  };

  [[nodiscard]] JsonKind InnermostKind() const { return open_.back().container->Kind(); }

  // A container is only begun when its closing unit lies somewhere ahead, be it within a string or
  // belonging to another container.
  bool Open(JsonKind kind, int start) {
    if (!scanner_.HasAhead(ClosingUnit(kind), start)) {
      return false;
    }
    OpenContainer& opened = open_.emplace_back();
    opened.start = start;
    if (kind == JsonKind::kObject) {
      opened.container = std::make_unique<JsonValue>(JsonValue::Object());
      keys_.emplace_back();
    } else {
      opened.container = std::make_unique<JsonValue>(JsonValue::Array());
    }
    return true;
  }

  std::unique_ptr<JsonValue> Close() {
    if (InnermostKind() == JsonKind::kObject) {
      keys_.pop_back();
    }
    std::unique_ptr<JsonValue> finished = std::move(open_.back().container);
    open_.pop_back();
    return finished;
  }

  // Reads a key, the colon and the whitespace around it, and moves the position behind what was
  // read, also on failure.
  bool ReadKey(int& position) {
    const int consumed = scanner_.ScanString(position, keys_.back());
    if (consumed < 0) {
      return false;
    }
    position = scanner_.SkipWhitespace(position + consumed);
    if (scanner_.UnitAt(position) != L':') {
      return false;
    }
    position = scanner_.SkipWhitespace(position + 1);
    return true;
  }

  // Puts the child that ends at the position into the innermost open container. Returns the
  // position behind the comma, which may be missing.
  int AddChild(std::unique_ptr<JsonValue> child, int position) {
    JsonValue& parent = *open_.back().container;
    if (JsonValue::Array* elements = parent.AsArray()) {
      elements->push_back(std::move(child));
    } else if (JsonValue::Object* members = parent.AsObject()) {
      members->insert_or_assign(std::move(keys_.back()), std::move(child));
    }
    position = scanner_.SkipWhitespace(position);
    return scanner_.UnitAt(position) == L',' ? position + 1 : position;
  }

  // The result of the outermost container after a failure at the position in the innermost one.
  // An array adds the magnitude of its element's failure to what it had read itself; an object
  // reports only what it had read.
  int Fail(int position, std::int64_t magnitude) {
    open_.back().child_start = position;
    for (; !open_.empty(); open_.pop_back()) {
      const OpenContainer& failed = open_.back();
      const std::int64_t read = std::int64_t{failed.child_start} - failed.start;
      magnitude = failed.container->Kind() == JsonKind::kArray ? read + magnitude : read;
    }
    return static_cast<int>(-magnitude);
  }

  const CJsonScanner& scanner_;
  std::vector<OpenContainer> open_;
  std::vector<std::wstring> keys_;  // of the member being read, one for every open object
};

bool CanBeRead(const wchar_t* text, int bound) {
  return text != nullptr && bound >= 1;
}

int ParseContainer(JsonValue& value, JsonKind kind, const wchar_t* text, int bound) {
  if (!CanBeRead(text, bound)) {
    return -1;
  }
  const CJsonScanner scanner(text, bound);
  return CContainerReader(scanner).Read(value, kind, 0);
}

}  // namespace

int ParseValue(JsonValue& value, const wchar_t* text, int bound) {
  if (!CanBeRead(text, bound)) {
    return -1;
  }
  const CJsonScanner scanner(text, bound);
  const int skipped = scanner.SkipWhitespace(0);
  const wchar_t unit = scanner.UnitAt(skipped);
  int consumed = 0;
  if (OpensContainer(unit)) {
    consumed = CContainerReader(scanner).Read(value, KindOpenedBy(unit), skipped);
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
  return CanBeRead(text, bound) ? CJsonScanner(text, bound).ScanString(0, out) : -1;
}

void FreeValue(JsonValue& value) {
  value.Clear();
}

}  // namespace nhupdate
