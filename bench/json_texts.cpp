#include "bench/json_texts.h"

#include <cstddef>
#include <string_view>

namespace nhupdate_bench {

namespace {

std::wstring Repeat(std::wstring_view text, int units) {
  std::wstring repeated;
  while (repeated.size() < static_cast<std::size_t>(units)) {
    repeated += text;
  }
  return repeated;
}

std::wstring StringFile(int units) {
  std::wstring text = L"{";
  for (int index = 0; text.size() < static_cast<std::size_t>(units); ++index) {
    text += L"\n  \"KEY_TEXT_" + std::to_wstring(index) +
            L"\": \"The update could not be completed.\\nPlease try again later.\",";
  }
  text.back() = L'}';
  return text;
}

std::wstring FlatArray(int units) {
  return L"[" + Repeat(L"12,", units) + L"12]";
}

std::wstring NestedArrays(int units) {
  return Repeat(L"[", units / 2) + Repeat(L"]", units / 2);
}

std::wstring NestedObjects(int units) {
  const std::wstring opening = Repeat(L"{\"a\":", units * 5 / 6);
  return opening + L"0" + std::wstring(opening.size() / 5, L'}');
}

std::wstring SiblingArrays(int units) {
  return L"[" + Repeat(L"[],", units) + L"[]]";
}

std::wstring OpenArrays(int units) {
  return Repeat(L"[", units);
}

std::wstring OpenArraysAndOneBracket(int units) {
  return Repeat(L"[", units) + L"]";
}

std::wstring OpenObjectsAndOneBracket(int units) {
  return Repeat(L"{\"a\":", units) + L"}";
}

std::wstring HugeString(int units) {
  return L"[\"" + Repeat(L"text\\n\\u0041", units) + L"\"]";
}

std::wstring HugeInteger(int units) {
  return L"[" + Repeat(L"7", units) + L"]";
}

std::wstring HugeReal(int units) {
  return L"[0." + Repeat(L"7", units) + L"]";
}

}  // namespace

const JsonText kJsonTexts[kJsonTextCount] = {
    {"string_file", "a string file", StringFile, true, true},
    {"flat_array", "a flat array of numbers", FlatArray, true, true},
    {"nested_arrays", "nested arrays", NestedArrays},
    {"nested_objects", "nested objects", NestedObjects, true, true},
    {"sibling_arrays", "many empty arrays", SiblingArrays},
    {"open_arrays", "arrays without an end", OpenArrays},
    {"open_arrays_one_bracket", "arrays without an end but for one", OpenArraysAndOneBracket},
    {"open_objects_one_bracket", "objects without an end but for a bracket",
     OpenObjectsAndOneBracket},
    {"huge_string", "one string with escapes", HugeString},
    {"huge_integer", "one integer", HugeInteger, false},
    {"huge_real", "one fraction", HugeReal},
};

}  // namespace nhupdate_bench
