# GoogleTest from Debian's sources, so that it is built like the rest (sanitizers, cross builds).
enable_language(C)
set(BUILD_GMOCK ON)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)

# The headers of GoogleTest, and the JSON that the programs speak.
if(SENSORDLL_PCH)
  file(CONFIGURE OUTPUT test_headers.cpp CONTENT "// Only its headers count.\n")
  add_executable(test_headers EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp)
  target_link_libraries(test_headers PRIVATE sensordll_options gmock gtest_main)
  target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  if(SENSORDLL_TOOLS)
    target_precompile_headers(test_headers PRIVATE <nlohmann/json.hpp>)
  endif()
endif()

# Coverage says what the library's own tests run of it; what the tests of everything else happen to run of it does not count.
set(SENSORDLL_COUNTED "/tests/(contract|integration|public-api|regress|unit/(config|diag|docs|initialisation|rootfs|schemes|sensor|style|technic))$")
set(SENSORDLL_NOT_COUNTED GCOV_PREFIX=${CMAKE_BINARY_DIR}-uncounted)

# sensordll_add_test(NAME SOURCES file... LIBRARIES target...)
# One test program; each of its tests is a test of its own to ctest, run in a process of its own. Where starting a process
# takes long, with a sanitizer and under an emulator, the program is one test, and leaves its counts in test-results.
function(sensordll_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  if(SENSORDLL_COVERAGE)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/CoverageOfAborts.cpp)
  endif()
  target_link_libraries(${name} PRIVATE sensordll_options ${arg_LIBRARIES} gmock gtest_main)
  if(SENSORDLL_PCH)
    target_precompile_headers(${name} REUSE_FROM test_headers)
  endif()
  set(folder ${CMAKE_BINARY_DIR}/test-work/${name})
  file(MAKE_DIRECTORY ${folder})
  if(SENSORDLL_SANITIZE OR CMAKE_CROSSCOMPILING)
    add_test(NAME ${name}:all COMMAND ${name} WORKING_DIRECTORY ${folder})
    list(LENGTH arg_SOURCES cost)  # the longest first, so that no processor waits at the end
    set_tests_properties(${name}:all PROPERTIES TIMEOUT 1200 COST ${cost}
                         ENVIRONMENT GTEST_OUTPUT=xml:${CMAKE_BINARY_DIR}/test-results/${name}.xml)
    return()
  endif()
  set(properties TIMEOUT 300)
  if(SENSORDLL_COVERAGE AND NOT CMAKE_CURRENT_SOURCE_DIR MATCHES "${SENSORDLL_COUNTED}")
    list(APPEND properties ENVIRONMENT ${SENSORDLL_NOT_COUNTED})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 WORKING_DIRECTORY ${folder}
                       TEST_PREFIX "${name}:" PROPERTIES ${properties})
endfunction()
