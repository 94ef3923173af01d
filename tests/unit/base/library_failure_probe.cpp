// Makes the standard library fail in the way that the argument names; ends with 0 if nobody minds.
// With "no bytes" it allocates nothing, twice, and ends with 0 if these are two places.

#include <cstddef>
#include <exception>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Volatile, or the compiler would see what is coming.
volatile std::size_t much = std::numeric_limits<std::size_t>::max() / 2;
volatile std::size_t none = 0;
const char* volatile nothing = nullptr;

}  // namespace

int main(int count, char** arguments) {
  const std::string_view task = count == 2 ? arguments[1] : "";
  if (task == "length") {
    return std::string().append(much, 'x').empty() ? 1 : 0;
  }
  if (task == "vector") {
    return std::vector<double>(much).empty() ? 1 : 0;
  }
  if (task == "allocation") {
    return std::allocator<double>().allocate(much) == nullptr ? 1 : 0;
  }
  if (task == "no bytes") {
    void* const one = ::operator new(none);
    void* const other = ::operator new(none);
    const bool are_two = one != nullptr && other != nullptr && one != other;
    ::operator delete(one);
    ::operator delete(other);
    return are_two ? 0 : 1;
  }
  if (task == "range") {
    return std::string(8, 'x').substr(much).empty() ? 1 : 0;
  }
  if (task == "null") {
    return std::string(nothing).empty() ? 1 : 0;
  }
  if (task == "terminate") {
    std::terminate();
  }
  return 1;
}
