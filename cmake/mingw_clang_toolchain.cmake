# clang for the same target, with the headers and libraries of the cross compiler: a second opinion
# on the sources, not what is shipped.

include(${CMAKE_CURRENT_LIST_DIR}/mingw_toolchain.cmake)

execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name
  OUTPUT_VARIABLE libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(gcc_folder ${libgcc} DIRECTORY)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${NHUPDATE_CROSS_PREFIX})
set(CMAKE_CXX_COMPILER_TARGET ${NHUPDATE_CROSS_PREFIX})

set(CMAKE_CXX_FLAGS_INIT "-isystem ${gcc_folder}/include/c++ \
-isystem ${gcc_folder}/include/c++/${NHUPDATE_CROSS_PREFIX}")
# The cross compiler's runtime needs its threads, which clang doesn't know of.
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-B${gcc_folder} -L${gcc_folder} -rtlib=libgcc -static \
-fuse-ld=/usr/bin/${NHUPDATE_CROSS_PREFIX}-ld")
endforeach()
set(CMAKE_CXX_STANDARD_LIBRARIES "-Wl,--start-group -lstdc++ -lmingw32 -lgcc -lgcc_eh -lmingwex \
-lmsvcrt -lpthread -lkernel32 -Wl,--end-group")
