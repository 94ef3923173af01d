#pragma once

// One value of a JSON text, with everything beneath it.

#include <cstdint>
#include <map>
#include <string>
#include <utility>
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
  using Array = std::vector<JsonValue>;
  // Members in ascending order of their keys, compared unit by unit.
  using Object = std::map<std::wstring, JsonValue>;

  JsonValue() = default;
  explicit JsonValue(bool boolean) : kind_(JsonKind::kBoolean) { payload_.boolean = boolean; }
  explicit JsonValue(std::int64_t integer) : kind_(JsonKind::kInteger) {
    payload_.integer = integer;
  }
  explicit JsonValue(double real) : kind_(JsonKind::kReal) { payload_.real = real; }
  explicit JsonValue(std::wstring string);
  explicit JsonValue(Array array);
  explicit JsonValue(Object object);
  // A pointer, to a text for instance, would otherwise be taken for a truth value.
  explicit JsonValue(const void*) = delete;
  JsonValue(JsonValue&& other) noexcept
      : kind_(std::exchange(other.kind_, JsonKind::kNull)),
        payload_(std::exchange(other.payload_, Payload())) {}
  JsonValue& operator=(JsonValue&& other) noexcept {
    // What was here goes last: the other value may be a part of it.
    JsonValue moved(std::move(other));
    std::swap(kind_, moved.kind_);
    std::swap(payload_, moved.payload_);
    return *this;
  }
  JsonValue(const JsonValue&) = delete;
  JsonValue& operator=(const JsonValue&) = delete;
  ~JsonValue() {
    if (kind_ >= JsonKind::kString) {
      Clear();
    }
  }

  [[nodiscard]] JsonKind Kind() const { return kind_; }

  // The payload of that kind; null when the value is of another kind.
  [[nodiscard]] const bool* AsBoolean() const {
    return kind_ == JsonKind::kBoolean ? &payload_.boolean : nullptr;
  }
  [[nodiscard]] const std::int64_t* AsInteger() const {
    return kind_ == JsonKind::kInteger ? &payload_.integer : nullptr;
  }
  [[nodiscard]] const double* AsReal() const {
    return kind_ == JsonKind::kReal ? &payload_.real : nullptr;
  }
  [[nodiscard]] const std::wstring* AsString() const {
    return kind_ == JsonKind::kString ? &ContentOf(payload_.string) : nullptr;
  }
  [[nodiscard]] const Array* AsArray() const {
    return kind_ == JsonKind::kArray ? &ContentOf(payload_.array) : nullptr;
  }
  [[nodiscard]] const Object* AsObject() const {
    return kind_ == JsonKind::kObject ? &ContentOf(payload_.object) : nullptr;
  }

  // Releases the payload and everything beneath it and leaves the value Null.
  void Clear();

 private:
  // A long array is mostly the moving of its elements, so values are small and move as numbers do.
  // What a pointer leads to belongs to the value; it is null when that would be empty.
  union Payload {
    std::int64_t integer = 0;
    bool boolean;
    double real;
    std::wstring* string;
    Array* array;
    Object* object;
  };

  // What is there, or the empty one that null stands for.
  [[nodiscard]] static const std::wstring& ContentOf(const std::wstring* string);
  [[nodiscard]] static const Array& ContentOf(const Array* array);
  [[nodiscard]] static const Object& ContentOf(const Object* object);

  [[nodiscard]] bool HasChildren() const {
    return (kind_ == JsonKind::kArray && payload_.array != nullptr) ||
           (kind_ == JsonKind::kObject && payload_.object != nullptr);
  }
  void MoveContainersTo(Array& pending);
  void DeletePayload();

  JsonKind kind_ = JsonKind::kNull;
  Payload payload_;
};

}  // namespace nhupdate
