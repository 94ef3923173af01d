#include "tests/support/naive_json_reader.h"

#include <map>
#include <string>
#include <vector>

#include "tests/support/json_description.h"
#include "tests/support/naive_json_parts.h"

namespace nhupdate_test {

namespace {

using naive::Rest;
using naive::StartsWith;
using naive::View;
using naive::Whitespace;

int Value(View text, std::string& value);

int SkipSeparator(View text, int count) {
  count += Whitespace(Rest(text, count));
  return StartsWith(Rest(text, count), L',') ? count + 1 : count;
}

int Array(View text, std::string& value) {
  if (text.find(L']') == View::npos) {
    return -1;
  }
  std::vector<std::string> elements;
  int count = 1;
  for (;;) {
    count += Whitespace(Rest(text, count));
    if (StartsWith(Rest(text, count), L']')) {
      break;
    }
    std::string element;
    const int result = Value(Rest(text, count), element);
    if (result <= 0) {
      return -(count - result);
    }
    elements.push_back(element);
    count = SkipSeparator(text, count + result);
  }
  std::string joined;
  for (const std::string& element : elements) {
    joined += (joined.empty() ? "" : ",") + element;
  }
  value = "[" + joined + "]";
  return count + 1;
}

int Object(View text, std::string& value) {
  if (text.find(L'}') == View::npos) {
    return -1;
  }
  std::map<std::wstring, std::string> members;
  int count = 1;
  for (;;) {
    count += Whitespace(Rest(text, count));
    if (StartsWith(Rest(text, count), L'}')) {
      break;
    }
    std::wstring key;
    const int key_result = naive::Quoted(Rest(text, count), key);
    if (key_result <= 0) {
      return -count;
    }
    count += key_result;
    count += Whitespace(Rest(text, count));
    if (!StartsWith(Rest(text, count), L':')) {
      return -count;
    }
    count += 1;
    count += Whitespace(Rest(text, count));
    std::string member;
    const int result = Value(Rest(text, count), member);
    if (result <= 0) {
      return -count;
    }
    members[key] = member;
    count = SkipSeparator(text, count + result);
  }
  std::string joined;
  for (const auto& [key, member] : members) {
    joined += (joined.empty() ? "" : ",") + DescribeString(key) + ":" + member;
  }
  value = "{" + joined + "}";
  return count + 1;
}

int Value(View text, std::string& value) {
  const int skipped = Whitespace(text);
  const View rest = Rest(text, skipped);
  const wchar_t unit = rest.empty() ? L'\0' : rest.front();
  int result = 0;
  if (unit == L'{') {
    result = Object(rest, value);
  } else if (unit == L'[') {
    result = Array(rest, value);
  } else if (unit == L'"') {
    result = naive::String(rest, value);
  } else if (unit == L'+' || unit == L'-' || naive::IsDecimal(unit)) {
    result = naive::Number(rest, value);
  } else if (View(L"FNTfnt").find(unit) != View::npos) {
    result = naive::Literal(rest, value);
  } else {
    return -(skipped + 1);
  }
  if (result + skipped > 0) {
    return result + skipped;
  }
  return result < 0 ? result : -1;
}

template <typename Reader>
JsonReading Read(Reader reader, View text, int bound) {
  JsonReading reading;
  const View readable = WithinBound(text, bound);
  const View ended = readable.substr(0, readable.find(L'\0'));
  reading.result = bound < 1 ? -1 : reader(ended, reading.value);
  return reading;
}

}  // namespace

JsonReading NaiveParseValue(std::wstring_view text, int bound) {
  return Read(Value, text, bound);
}

JsonReading NaiveParseObject(std::wstring_view text, int bound) {
  return Read(Object, text, bound);
}

JsonReading NaiveParseArray(std::wstring_view text, int bound) {
  return Read(Array, text, bound);
}

JsonReading NaiveParseString(std::wstring_view text, int bound) {
  return Read(naive::String, text, bound);
}

JsonReading NaiveParseNumber(std::wstring_view text, int bound) {
  return Read(naive::Number, text, bound);
}

JsonReading NaiveParseLiteral(std::wstring_view text, int bound) {
  return Read(naive::Literal, text, bound);
}

}  // namespace nhupdate_test
