# GoogleTest, built from the sources that Debian packages, with its own flags.

set(NHUPDATE_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's source folder")

set(INSTALL_GTEST OFF)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory(${NHUPDATE_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
