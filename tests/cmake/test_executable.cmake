# nhupdate_add_test_executable(NAME RING ring [LANE lane...] [FENCE scratch|prefix] [LIBRARIES ...]
#                              [TIMEOUT seconds] SOURCES ...)
#
# A GoogleTest executable whose tests are known to ctest one by one. LANE is the Wine prefix that
# its tests share; each lane runs one test at a time. Where several are named, a run of all tests
# deals those of this executable out among them. FENCE says what its tests may change
# (tests/support/fence.h): their own scratch folders, or all of the prefix. On Windows itself the
# prefix is the machine, and such tests run one at a time there. A portable executable is one of the
# unit tests when it is built for Windows.
function(nhupdate_add_test_executable name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "RING;FENCE;TIMEOUT" "LANE;SOURCES;LIBRARIES")
  if(NOT arg_LANE)
    set(arg_LANE unit)
  endif()
  if(NOT arg_FENCE)
    set(arg_FENCE scratch)
  endif()
  set(name_prefix)
  if(WIN32 AND arg_RING STREQUAL "portable")
    set(arg_RING unit)
  elseif(NOT WIN32)
    # Tells these tests from the same ones in the build for Windows.
    set(name_prefix Portable.)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()

  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE
    ${arg_LIBRARIES} nhupdate_test_support nhupdate_options gmock)
  target_precompile_headers(${name} REUSE_FROM nhupdate_test_support)

  set(lane_properties)
  if(WIN32)
    target_link_libraries(${name} PRIVATE
      nhupdate_fence_around_${arg_FENCE} nhupdate_test_manifest)
    add_dependencies(${name} nhupdate_golden_files)
    list(GET arg_LANE 0 lane)
    set(lock lane-${lane})
    if(CMAKE_HOST_WIN32 AND arg_FENCE STREQUAL "prefix")
      set(lock machine)
    endif()
    set(lane_properties RESOURCE_LOCK ${lock} ENVIRONMENT NHUPDATE_LANE=${lane})
    if(CMAKE_HOST_WIN32)
      list(APPEND lane_properties FIXTURES_REQUIRED package)
    endif()
  endif()
  gtest_discover_tests(${name} TEST_PREFIX "${name_prefix}"
    DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    # What may take long begins first, so that a run doesn't end in waiting for it.
    PROPERTIES LABELS ${arg_RING} TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} ${lane_properties})

  # For tools/lib/test_list.py.
  if(CMAKE_HOST_UNIX)
    list(TRANSFORM arg_SOURCES PREPEND "source ${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE sources)
    list(JOIN sources "\n" sources)
    list(TRANSFORM arg_LANE PREPEND "lane " OUTPUT_VARIABLE lanes)
    list(JOIN lanes "\n" lanes)
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/test_executables/${name}.txt CONTENT
"ring ${arg_RING}
${lanes}
prefix ${name_prefix}
program $<TARGET_FILE:${name}>
timeout ${arg_TIMEOUT}
tests ${CMAKE_CURRENT_BINARY_DIR}/${name}[1]_include.cmake
${sources}
")
  endif()
endfunction()
