#include "text/json_value.h"

namespace nhupdate {

JsonValue::JsonValue(JsonValue&& other) noexcept
    : payload_(std::exchange(other.payload_, Payload())) {}

JsonValue& JsonValue::operator=(JsonValue&& other) noexcept {
  if (this != &other) {
    Clear();
    payload_ = std::exchange(other.payload_, Payload());
  }
  return *this;
}

JsonValue::~JsonValue() {
  Clear();
}

// Letting the containers destroy each other would need a stack frame for every level of nesting.
// Here they are unhooked first and die one by one, each with nothing but leaves in it.
void JsonValue::Clear() {
  std::vector<std::unique_ptr<JsonValue>> pending;
  MoveContainersTo(pending);
  while (!pending.empty()) {
    const std::unique_ptr<JsonValue> next = std::move(pending.back());
    pending.pop_back();
    next->MoveContainersTo(pending);
    next->payload_ = Payload();
  }
  payload_ = Payload();
}

bool JsonValue::HasChildren() const {
  const Array* array = AsArray();
  const Object* object = AsObject();
  return (array != nullptr && !array->empty()) || (object != nullptr && !object->empty());
}

void JsonValue::MoveContainersTo(std::vector<std::unique_ptr<JsonValue>>& pending) {
  if (Array* array = AsArray()) {
    for (std::unique_ptr<JsonValue>& element : *array) {
      if (element->HasChildren()) {
        pending.push_back(std::move(element));
      }
    }
  } else if (Object* object = AsObject()) {
    for (auto& [key, value] : *object) {
      if (value->HasChildren()) {
        pending.push_back(std::move(value));
      }
    }
  }
}

}  // namespace nhupdate
