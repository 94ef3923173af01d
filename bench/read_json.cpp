// Reads one text of a kind and a length, and releases it: read_json NAME UNITS. What that takes is
// counted from outside (bench/instruction_bench.py).

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

#include "bench/json_texts.h"
#include "text/json_reader.h"

int main(int argument_count, char** arguments) {
  const std::string name = argument_count == 3 ? arguments[1] : "";
  const auto json =
      std::find_if(std::begin(nhupdate_bench::kJsonTexts), std::end(nhupdate_bench::kJsonTexts),
                   [&](const nhupdate_bench::JsonText& known) { return known.name == name; });
  if (json == std::end(nhupdate_bench::kJsonTexts)) {
    return EXIT_FAILURE;
  }
  const std::wstring text = json->make(std::atoi(arguments[2]));
  nhupdate::JsonValue value;
  const int consumed = nhupdate::ParseValue(value, text.c_str(), static_cast<int>(text.size()));
  nhupdate::FreeValue(value);
  return consumed > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
