// What the stack protector makes of this process:
//
//   stack_guard_probe value      ends with 32 bits of the guard's value
//   stack_guard_probe overrun    writes beyond a buffer on its stack; ends with 0 if nobody minds

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

extern "C" std::uintptr_t __stack_chk_guard;

namespace {

// Volatile, or the compiler would see that nothing comes of the overrun and could leave it out.
volatile std::size_t length = 64;
volatile char seen = 0;

[[gnu::noinline]] void Overrun() {
  char buffer[16];
  std::memset(buffer, 'x', length);
  seen = buffer[0];
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view task = count == 2 ? arguments[1] : "";
  if (task == "value") {
    return static_cast<int>(static_cast<std::uint32_t>(__stack_chk_guard >> 8));
  }
  if (task == "overrun") {
    Overrun();
    return 0;
  }
  return 1;
}
