#include "text/json_container_reader.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace nhupdate {

namespace {

JsonKind KindOpenedBy(wchar_t unit) {
  return unit == L'{' ? JsonKind::kObject : JsonKind::kArray;
}

wchar_t ClosingUnit(JsonKind kind) {
  return kind == JsonKind::kObject ? L'}' : L']';
}

}  // namespace

int CJsonContainerReader::Read(JsonValue& value, JsonKind kind, int start) {
  if (!Open(kind, start)) {
    return -1;
  }
  int position = start + 1;
  for (;;) {
    position = scanner_.SkipWhitespace(position);
    const JsonKind innermost = open_.back().kind;
    if (scanner_.UnitAt(position) == ClosingUnit(innermost)) {
      JsonValue closed = Close();
      ++position;
      if (open_.empty()) {
        value = std::move(closed);
        return position - start;
      }
      children_.push_back(std::move(closed));
      position = SkipComma(position);
      continue;
    }

    if (innermost == JsonKind::kObject && !ReadKey(position)) {
      return Fail(position, 0);
    }

    const wchar_t unit = scanner_.UnitAt(position);
    if (IsOpening(unit)) {
      if (!Open(KindOpenedBy(unit), position)) {
        return Fail(position, 1);
      }
      ++position;
      continue;
    }

    const int consumed = scanner_.ParseScalar(children_.emplace_back(), position);
    if (consumed < 0) {
      return Fail(position, -std::int64_t{consumed});
    }
    position = SkipComma(position + consumed);
  }
}

// A container is only begun when its closing unit lies somewhere ahead, be it within a string or
// belonging to another container.
bool CJsonContainerReader::Open(JsonKind kind, int position) {
  if (!scanner_.HasAhead(ClosingUnit(kind), position)) {
    return false;
  }
  open_.push_back({kind, position, static_cast<int>(children_.size())});
  return true;
}

// Ends the innermost container and takes its children for it.
JsonValue CJsonContainerReader::Close() {
  const OpenContainer closed = open_.back();
  open_.pop_back();
  return closed.kind == JsonKind::kObject ? TakeObject(closed.first_child)
                                          : TakeArray(closed.first_child);
}

JsonValue CJsonContainerReader::TakeArray(int first_child) {
  // A long array that has them all takes them as they lie.
  constexpr std::size_t kMany = 4096;
  if (first_child == 0 && children_.size() >= kMany) {
    return JsonValue(std::exchange(children_, {}));
  }
  const auto first = children_.begin() + first_child;
  JsonValue::Array array(std::make_move_iterator(first), std::make_move_iterator(children_.end()));
  children_.erase(first, children_.end());
  return JsonValue(std::move(array));
}

// The value of a later member with the same key replaces the earlier one's.
JsonValue CJsonContainerReader::TakeObject(int first_child) {
  const auto first = children_.begin() + first_child;
  const auto first_key = keys_.end() - (children_.end() - first);
  JsonValue::Object object;
  // Keys often come in order, so each is looked for behind the one before it first.
  auto last = object.end();
  auto key = first_key;
  for (auto child = first; child != children_.end(); ++child, ++key) {
    const auto expected = last == object.end() ? last : std::next(last);
    last = object.insert_or_assign(expected, std::move(*key), std::move(*child));
  }
  children_.erase(first, children_.end());
  keys_.erase(first_key, keys_.end());
  return JsonValue(std::move(object));
}

// Reads a key, the colon and the whitespace around it, and moves the position behind what was
// read, also on failure.
bool CJsonContainerReader::ReadKey(int& position) {
  const int consumed = scanner_.ScanString(position, keys_.emplace_back());
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

// The position behind the comma that may follow a child.
int CJsonContainerReader::SkipComma(int position) const {
  position = scanner_.SkipWhitespace(position);
  return scanner_.UnitAt(position) == L',' ? position + 1 : position;
}

// The result of the outermost container after a failure at the position in the innermost one.
// An array adds the magnitude of its element's failure to what it had read itself; an object
// reports only what it had read.
int CJsonContainerReader::Fail(int position, std::int64_t magnitude) {
  for (; !open_.empty(); open_.pop_back()) {
    const OpenContainer& failed = open_.back();
    const std::int64_t read = std::int64_t{position} - failed.start;
    magnitude = failed.kind == JsonKind::kArray ? read + magnitude : read;
    position = failed.start;
  }
  return static_cast<int>(-magnitude);
}

}  // namespace nhupdate
