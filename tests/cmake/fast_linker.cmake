# The tests are linked by another linker than what is shipped: there are dozens of them, and it takes a
# twentieth of the time. The cross compiler takes no other than its own, unless a file with its
# settings names one. Where there is none they are linked as everything else is.

find_program(NHUPDATE_FAST_LINKER ld.lld)
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NHUPDATE_FAST_LINKER)
  set(settings ${PROJECT_BINARY_DIR}/fast_linker.txt)
  file(CONFIGURE OUTPUT ${settings} CONTENT "*linker:\n${NHUPDATE_FAST_LINKER}\n\n")
  add_link_options($<$<CONFIG:RelWithDebInfo>:-specs=${settings}>)
endif()
