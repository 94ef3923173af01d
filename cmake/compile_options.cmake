# The one place for compiler and linker flags: everything of our own links nhupdate_options.
# Third-party code gets none of them.

add_library(nhupdate_options INTERFACE)
target_compile_features(nhupdate_options INTERFACE cxx_std_20)
target_include_directories(nhupdate_options INTERFACE ${PROJECT_SOURCE_DIR})

if(WIN32)
  target_compile_definitions(nhupdate_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
    WINVER=0x0A00 _WIN32_WINNT=0x0A00 PSAPI_VERSION=2)
endif()

# Folders are walked recursively, and a path of 32,767 characters has room for 16,383 levels. This
# only reserves addresses: memory is taken as it is needed.
set(NHUPDATE_STACK_BYTES 67108864)  # 64 MiB, 4 KiB for each level

if(MSVC)
  # /Brepro leaves times out of what is written.
  target_compile_options(nhupdate_options INTERFACE
    /W4 /WX /permissive- /utf-8 /EHsc /guard:cf /Brepro)
  target_compile_definitions(nhupdate_options INTERFACE _CRT_SECURE_NO_WARNINGS)
  target_link_options(nhupdate_options INTERFACE /guard:cf /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT
    /Brepro /STACK:${NHUPDATE_STACK_BYTES})
else()
  target_compile_options(nhupdate_options INTERFACE
    -Werror -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough
    -Wnull-dereference -Wmissing-declarations -Wundef
    # The same source gives the same bytes wherever it lies.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}/=
    -fstack-protector-strong)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(nhupdate_options INTERFACE
      -Wsuggest-override -Wduplicated-cond -Wduplicated-branches -Wlogical-op)
  endif()
endif()

if(MINGW)
  target_compile_options(nhupdate_options INTERFACE -ffunction-sections -fdata-sections)
  target_link_options(nhupdate_options INTERFACE
    -static
    LINKER:--dynamicbase,--high-entropy-va,--nxcompat LINKER:--no-insert-timestamp
    LINKER:--stack,${NHUPDATE_STACK_BYTES}
    LINKER:--gc-sections)

  # The stack protector's own value and failure function (see the file). The linker isn't told of
  # the protector, so that it doesn't take the compiler's library for it.
  add_library(nhupdate_stack_guard STATIC ${PROJECT_SOURCE_DIR}/base/stack_guard.cpp)
  foreach(property COMPILE_FEATURES COMPILE_OPTIONS COMPILE_DEFINITIONS INCLUDE_DIRECTORIES)
    set_property(TARGET nhupdate_stack_guard PROPERTY
      ${property} $<TARGET_PROPERTY:nhupdate_options,INTERFACE_${property}>)
  endforeach()
  target_link_libraries(nhupdate_options INTERFACE nhupdate_stack_guard)
endif()

if(NHUPDATE_SANITIZE)
  target_compile_options(nhupdate_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(nhupdate_options INTERFACE -fsanitize=address,undefined)
endif()

if(NHUPDATE_FUZZ)
  # The fuzzer's main function comes with the fuzzers only.
  target_compile_options(nhupdate_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(NHUPDATE_COVERAGE)
  # gcov's own bookkeeping would only disturb the figures when it is optimised. It needs no debug
  # symbols, which take more room than anything else.
  target_compile_options(nhupdate_options INTERFACE --coverage -O0 -fno-inline -g0)
  target_link_options(nhupdate_options INTERFACE --coverage)
endif()
