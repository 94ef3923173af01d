// What the standard library calls where it would throw, and its allocation. Nothing of this program
// catches an exception, so each would end the process; here it ends at once, and all that the
// library would bring along to throw, to describe and to print an exception (with a library of
// threads half of the program's size) stays out of it. Only GCC's library has these functions, and
// only the program and the log library have this file: the tests throw and catch.
//
// When the linker finds one of them defined twice, something new calls a function of that kind that
// isn't here yet.

#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include "base/want_of_memory.h"

void* operator new(std::size_t size) {
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    nhupdate::EndProcessForWantOfMemory();
  }
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

// NOLINTBEGIN(cert-dcl58-cpp): the names are the library's.
namespace std {

void __throw_bad_alloc() {
  nhupdate::EndProcessForWantOfMemory();
}

void __throw_bad_array_new_length() {
  nhupdate::EndProcessForWantOfMemory();
}

// More than the largest object could hold.
void __throw_length_error(const char* /*where*/) {
  nhupdate::EndProcessForWantOfMemory();
}

void __throw_logic_error(const char* /*what*/) {
  std::abort();
}

void __throw_out_of_range_fmt(const char* /*format*/, ...) {
  std::abort();
}

}  // namespace std

namespace __gnu_cxx {

// What std::terminate calls at last.
void __verbose_terminate_handler() {
  std::abort();
}

}  // namespace __gnu_cxx
// NOLINTEND(cert-dcl58-cpp)
