# The test framework for the target, from the sources that the distribution ships, and zul_test() on top of it.
set(ZUL_GTEST_SOURCES /usr/src/googletest CACHE PATH "Sources of GoogleTest")
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
add_subdirectory(${ZUL_GTEST_SOURCES} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
include(windows/host_only.cmake)

# zul_test(NAME SOURCES... [LIBS ...]): one test program per room, run as a whole. The libraries are the host's.
function(zul_test name)
  cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
  list(REMOVE_ITEM ARG_UNPARSED_ARGUMENTS ${host_only_sources})
  add_executable(${name} ${ARG_UNPARSED_ARGUMENTS} ${PROJECT_SOURCE_DIR}/tests/windows/trace.cpp)
  target_include_directories(${name} BEFORE PRIVATE ${PROJECT_SOURCE_DIR}/tests/windows/include)
  target_link_libraries(${name} PRIVATE zul_options zulgraphics zulshim GTest::gtest_main)
  string(REPLACE test_ host_only_ list ${name})
  list(JOIN ${list} ":" excluded)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1 --gtest_filter=-${excluded})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
