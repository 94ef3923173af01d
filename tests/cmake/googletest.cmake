# GoogleTest: as it is installed for this machine and its own compiler; or else from the sources that
# Debian packages, built with its own flags; or else as it is installed; or else fetched. Whichever it
# is, the target is called gmock.

set(NHUPDATE_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH
  "GoogleTest's source folder; another one is looked for where there is none")

set(INSTALL_GTEST OFF)
# GoogleTest needs the C runtime that everything else has (CMAKE_MSVC_RUNTIME_LIBRARY). Its older
# releases only look at that variable when they are told to.
set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
set(CMAKE_POLICY_DEFAULT_CMP0091 NEW)

if(NOT CMAKE_CROSSCOMPILING AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  find_package(GTest QUIET CONFIG)
endif()

if(NOT TARGET GTest::gmock AND EXISTS ${NHUPDATE_GOOGLETEST_SOURCE}/CMakeLists.txt)
  add_subdirectory(
    ${NHUPDATE_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  return()
endif()

find_package(GTest QUIET CONFIG)
if(TARGET GTest::gmock)
  add_library(gmock INTERFACE)
  target_link_libraries(gmock INTERFACE GTest::gmock)
  return()
endif()

include(FetchContent)
FetchContent_Declare(googletest
  GIT_REPOSITORY https://github.com/google/googletest.git
  GIT_TAG release-1.12.1
  GIT_SHALLOW ON)
FetchContent_MakeAvailable(googletest)
