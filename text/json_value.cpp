#include "text/json_value.h"

namespace nhupdate {

namespace {

// Not within the functions that return them: the first call would have to be guarded against other
// threads there, for which the compiler brings a library along.
const std::wstring kEmptyString;
const JsonValue::Array kEmptyArray;
const JsonValue::Object kEmptyObject;

template <typename Content>
Content* NewUnlessEmpty(Content&& content) {
  return content.empty() ? nullptr : new Content(std::forward<Content>(content));
}

}  // namespace

JsonValue::JsonValue(std::wstring string) : kind_(JsonKind::kString) {
  payload_.string = NewUnlessEmpty(std::move(string));
}

JsonValue::JsonValue(Array array) : kind_(JsonKind::kArray) {
  payload_.array = NewUnlessEmpty(std::move(array));
}

JsonValue::JsonValue(Object object) : kind_(JsonKind::kObject) {
  payload_.object = NewUnlessEmpty(std::move(object));
}

const std::wstring& JsonValue::ContentOf(const std::wstring* string) {
  return string != nullptr ? *string : kEmptyString;
}

const JsonValue::Array& JsonValue::ContentOf(const Array* array) {
  return array != nullptr ? *array : kEmptyArray;
}

const JsonValue::Object& JsonValue::ContentOf(const Object* object) {
  return object != nullptr ? *object : kEmptyObject;
}

// Letting the containers destroy each other would need a stack frame for every level of nesting.
// Here they are unhooked first and die one by one, each with nothing but leaves in it.
void JsonValue::Clear() {
  Array pending;
  MoveContainersTo(pending);
  DeletePayload();
  while (!pending.empty()) {
    JsonValue next = std::move(pending.back());
    pending.pop_back();
    next.MoveContainersTo(pending);
    next.DeletePayload();
  }
}

void JsonValue::MoveContainersTo(Array& pending) {
  if (!HasChildren()) {
    return;
  }
  if (kind_ == JsonKind::kArray) {
    for (JsonValue& element : *payload_.array) {
      if (element.HasChildren()) {
        pending.push_back(std::move(element));
      }
    }
  } else {
    for (auto& [key, value] : *payload_.object) {
      if (value.HasChildren()) {
        pending.push_back(std::move(value));
      }
    }
  }
}

void JsonValue::DeletePayload() {
  if (kind_ == JsonKind::kString) {
    delete payload_.string;
  } else if (kind_ == JsonKind::kArray) {
    delete payload_.array;
  } else if (kind_ == JsonKind::kObject) {
    delete payload_.object;
  }
  kind_ = JsonKind::kNull;
  payload_ = Payload();
}

}  // namespace nhupdate
