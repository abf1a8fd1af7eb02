# GoogleTest from Debian's sources, so that it is built like the rest (sanitizers, cross builds).
enable_language(C)
set(BUILD_GMOCK ON)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)

# sensordll_add_test(NAME SOURCES file... LIBRARIES target...)
# One test program; each of its tests is a test of its own to ctest, run in a process and a folder of its own.
function(sensordll_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  if(SENSORDLL_COVERAGE)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/CoverageOfAborts.cpp)
  endif()
  target_link_libraries(${name} PRIVATE sensordll_options ${arg_LIBRARIES} gmock gtest_main)
  set(folder ${CMAKE_BINARY_DIR}/test-work/${name})
  file(MAKE_DIRECTORY ${folder})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 WORKING_DIRECTORY ${folder}
                       TEST_PREFIX "${name}:" PROPERTIES TIMEOUT 300)
endfunction()
