# The tests are linked by another linker than what is shipped: there are dozens of them, and it takes a
# twentieth of the time. The compiler only knows its own, so it is told by a spec file. Where there is
# none they are linked as everything else is.

find_program(NHUPDATE_FAST_LINKER ld.lld)
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NHUPDATE_FAST_LINKER)
  set(specs ${PROJECT_BINARY_DIR}/fast_linker.specs)
  file(CONFIGURE OUTPUT ${specs} CONTENT "*linker:\n${NHUPDATE_FAST_LINKER}\n\n")
  add_link_options($<$<CONFIG:RelWithDebInfo>:-specs=${specs}>)
endif()
