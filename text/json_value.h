#pragma once

// One value of a JSON text, with everything beneath it.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace nhupdate {

enum class JsonKind : int {
  kNull = 0,
  kBoolean = 1,
  kInteger = 2,
  kReal = 3,
  kString = 4,
  kArray = 5,
  kObject = 6,
};

// Owns its payload and, through it, the whole subtree. However deep that is nested, it is released
// without recursion. A fresh value is Null; so is one that was moved from.
class JsonValue {
 public:
  // Elements in document order.
  using Array = std::vector<std::unique_ptr<JsonValue>>;
  // Members in ascending order of their keys, compared unit by unit.
  using Object = std::map<std::wstring, std::unique_ptr<JsonValue>>;

  JsonValue() = default;
  explicit JsonValue(bool boolean) : payload_(boolean) {}
  explicit JsonValue(std::int64_t integer) : payload_(integer) {}
  explicit JsonValue(double real) : payload_(real) {}
  explicit JsonValue(std::wstring string) : payload_(std::move(string)) {}
  explicit JsonValue(Array array) : payload_(std::move(array)) {}
  explicit JsonValue(Object object) : payload_(std::move(object)) {}
  // A pointer, to a text for instance, would otherwise be taken for a truth value.
  explicit JsonValue(const void*) = delete;
  JsonValue(JsonValue&& other) noexcept;
  JsonValue& operator=(JsonValue&& other) noexcept;
  JsonValue(const JsonValue&) = delete;
  JsonValue& operator=(const JsonValue&) = delete;
  ~JsonValue();

  [[nodiscard]] JsonKind Kind() const { return static_cast<JsonKind>(payload_.index()); }

  // The payload of that kind; null when the value is of another kind.
  [[nodiscard]] const bool* AsBoolean() const { return std::get_if<bool>(&payload_); }
  [[nodiscard]] const std::int64_t* AsInteger() const {
    return std::get_if<std::int64_t>(&payload_);
  }
  [[nodiscard]] const double* AsReal() const { return std::get_if<double>(&payload_); }
  [[nodiscard]] const std::wstring* AsString() const {
    return std::get_if<std::wstring>(&payload_);
  }
  [[nodiscard]] const Array* AsArray() const { return std::get_if<Array>(&payload_); }
  [[nodiscard]] Array* AsArray() { return std::get_if<Array>(&payload_); }
  [[nodiscard]] const Object* AsObject() const { return std::get_if<Object>(&payload_); }
  [[nodiscard]] Object* AsObject() { return std::get_if<Object>(&payload_); }

  // Releases the payload and everything beneath it and leaves the value Null.
  void Clear();

 private:
  // The alternatives stand in the order of the numbers of JsonKind.
  using Payload =
      std::variant<std::monostate, bool, std::int64_t, double, std::wstring, Array, Object>;

  [[nodiscard]] bool HasChildren() const;
  void MoveContainersTo(std::vector<std::unique_ptr<JsonValue>>& pending);

  Payload payload_;
};

}  // namespace nhupdate
