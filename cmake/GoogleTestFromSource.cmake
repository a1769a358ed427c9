# GoogleTest is built with the flags of this build, so that it fits the 32-bit and the sanitized build as well.
include(GoogleTest)

set(PBR_GOOGLETEST_DIR /usr/src/googletest CACHE PATH "Where GoogleTest's sources are")
set(INSTALL_GTEST OFF)
add_subdirectory(${PBR_GOOGLETEST_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
