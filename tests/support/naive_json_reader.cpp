#include "tests/support/naive_json_reader.h"

#include <map>
#include <sstream>

#include "tests/support/json_description.h"
#include "tests/support/naive_json_parts.h"
#include "text/json_reader.h"

namespace nhupdate_test {

namespace {

using naive::Rest;
using naive::StartsWith;
using naive::View;
using naive::Whitespace;

int Value(View text, std::string& value);

// Reads what is between the brackets. `read_one` gets what is left of the text and returns how many
// units it has read; on failure 0, or a negative number that says how far it has come.
template <typename ReadOne>
int Container(View text, wchar_t end, ReadOne read_one) {
  if (text.find(end) == View::npos) {
    return -1;
  }
  int count = 1;
  for (;;) {
    count += Whitespace(Rest(text, count));
    if (StartsWith(Rest(text, count), end)) {
      return count + 1;
    }
    const int result = read_one(Rest(text, count));
    if (result <= 0) {
      return -(count - result);
    }
    count += result;
    count += Whitespace(Rest(text, count));
    count += StartsWith(Rest(text, count), L',') ? 1 : 0;
  }
}

int Array(View text, std::string& value) {
  std::string elements;
  const int result = Container(text, L']', [&](View rest) {
    std::string element;
    const int count = Value(rest, element);
    elements += elements.empty() ? "" : ",";
    elements += element;
    return count;
  });
  if (result > 0) {
    value = "[" + elements + "]";
  }
  return result;
}

int Object(View text, std::string& value) {
  std::map<std::wstring, std::string> members;
  const int result = Container(text, L'}', [&](View rest) {
    std::wstring key;
    int count = naive::Quoted(rest, key);
    if (count <= 0) {
      return 0;
    }
    count += Whitespace(Rest(rest, count));
    if (!StartsWith(Rest(rest, count), L':')) {
      return -count;
    }
    count += 1;
    count += Whitespace(Rest(rest, count));
    std::string member;
    const int member_result = Value(Rest(rest, count), member);
    if (member_result <= 0) {
      return -count;
    }
    members[key] = member;
    return count + member_result;
  });
  if (result > 0) {
    std::string descriptions;
    for (const auto& [key, member] : members) {
      descriptions += (descriptions.empty() ? "" : ",") + DescribeString(key) + ":" + member;
    }
    value = "{" + descriptions + "}";
  }
  return result;
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

using NaiveReader = int (*)(View text, std::string& value);

JsonReading Read(NaiveReader reader, View text, int bound) {
  JsonReading reading;
  const View readable = WithinBound(text, bound);
  const View ended = readable.substr(0, readable.find(L'\0'));
  reading.result = bound < 1 ? -1 : reader(ended, reading.value);
  return reading;
}

struct ComparedReader {
  const char* name;
  JsonReader reader;  // null for ScanString, which has another signature
  NaiveReader naive;
};

constexpr ComparedReader kReaders[] = {
    {"ParseValue", nhupdate::ParseValue, Value},
    {"ParseObject", nhupdate::ParseObject, Object},
    {"ParseArray", nhupdate::ParseArray, Array},
    {"ParseString", nhupdate::ParseString, naive::String},
    {"ParseNumber", nhupdate::ParseNumber, naive::Number},
    {"ParseLiteral", nhupdate::ParseLiteral, naive::Literal},
    {"ScanString", nullptr, naive::String},
};

}  // namespace

JsonReading NaiveParseValue(std::wstring_view text, int bound) {
  return Read(Value, text, bound);
}

std::string DisagreementOn(std::wstring_view text, int bound) {
  const CReadableText readable(text, bound);
  for (const auto& [name, reader, naive_reader] : kReaders) {
    const JsonReading reading = reader != nullptr ? readable.Read(reader) : readable.ScanString();
    const JsonReading naive = Read(naive_reader, text, bound);
    if (reading != naive) {
      std::ostringstream description;
      description << name << " reads " << DescribeString(text) << " with the bound " << bound
                  << " as " << reading << ", which is " << naive;
      return description.str();
    }
  }
  return {};
}

}  // namespace nhupdate_test
