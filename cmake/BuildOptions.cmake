# What every target of this project is compiled with. Third-party code is not.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Sanitizers and coverage must reach third-party test code too, so they are global.
if(SENSORDLL_SANITIZE)
  add_compile_options(-fsanitize=${SENSORDLL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SENSORDLL_SANITIZE})
endif()

# Headers that take a compiler long are parsed once for all files that use them, instead of once for each. Off unless asked
# for: a compiler cache keeps nothing that comes of them.
option(SENSORDLL_PCH "Precompile the heaviest headers" OFF)

# Programs and tests are compiled several files at a time: templates that all of them use (assertions, matchers, JSON) take
# longer than what a file holds itself. So names without linkage must be one of a kind within a target. Off for tools that
# want to see one file at a time. The library itself never is.
option(SENSORDLL_UNITY "Compile programs and tests several files at a time" ON)
macro(sensordll_compile_together)
  if(SENSORDLL_UNITY)
    set(CMAKE_UNITY_BUILD ON)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)
    # A fixture without linkage may be the base of a test in the same .cpp; the compiler takes that for a header.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endmacro()

find_package(Threads REQUIRED)

add_library(sensordll_options INTERFACE)
target_compile_options(sensordll_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_include_directories(sensordll_options INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(sensordll_options INTERFACE Threads::Threads)
# sensordll_record_coverage(TARGET): its sources leave what has run of them. All others run as they always do.
if(SENSORDLL_COVERAGE)
  add_link_options(--coverage)
endif()
function(sensordll_record_coverage target)
  if(SENSORDLL_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fno-inline)
    set_target_properties(${target} PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)  # theirs are compiled otherwise
  endif()
endfunction()

# TinyXML comes without a CMake package.
find_path(TINYXML_INCLUDE_DIR tinyxml.h REQUIRED)
find_library(TINYXML_LIBRARY tinyxml REQUIRED)
add_library(tinyxml INTERFACE)
target_include_directories(tinyxml SYSTEM INTERFACE ${TINYXML_INCLUDE_DIR})
target_compile_definitions(tinyxml INTERFACE TIXML_USE_STL)
target_link_libraries(tinyxml INTERFACE ${TINYXML_LIBRARY})

# inih: the C part of the parser of ini files.
find_path(INIH_INCLUDE_DIR ini.h REQUIRED)
find_library(INIH_LIBRARY inih REQUIRED)
add_library(inih INTERFACE)
target_include_directories(inih SYSTEM INTERFACE ${INIH_INCLUDE_DIR})
target_link_libraries(inih INTERFACE ${INIH_LIBRARY})

# libedit: the prompt of sensorctl. A cross build has the library without its development package, hence the second name.
if(SENSORDLL_TOOLS)
  find_path(LIBEDIT_INCLUDE_DIR histedit.h REQUIRED)
  find_library(LIBEDIT_LIBRARY NAMES edit libedit.so.2 REQUIRED)
  add_library(libedit INTERFACE)
  target_include_directories(libedit SYSTEM INTERFACE ${LIBEDIT_INCLUDE_DIR})
  target_link_libraries(libedit INTERFACE ${LIBEDIT_LIBRARY})
endif()

# The part of libjpeg-turbo that returns its errors: the pictures of the simulated camera.
find_path(TURBOJPEG_INCLUDE_DIR turbojpeg.h REQUIRED)
find_library(TURBOJPEG_LIBRARY turbojpeg REQUIRED)
add_library(turbojpeg INTERFACE)
target_include_directories(turbojpeg SYSTEM INTERFACE ${TURBOJPEG_INCLUDE_DIR})
target_link_libraries(turbojpeg INTERFACE ${TURBOJPEG_LIBRARY})

# camerad: the HTTP server is Debian's compiled library, so these must be what it was compiled with; and the hash of
# passwords. A cross build has both without their development packages, hence the second names.
if(SENSORDLL_TOOLS)
  find_path(HTTPLIB_INCLUDE_DIR httplib.h REQUIRED)
  find_library(HTTPLIB_LIBRARY NAMES cpp-httplib libcpp-httplib.so.0.11 REQUIRED)
  add_library(httplib INTERFACE)
  target_include_directories(httplib SYSTEM INTERFACE ${HTTPLIB_INCLUDE_DIR})
  target_compile_definitions(httplib INTERFACE CPPHTTPLIB_OPENSSL_SUPPORT CPPHTTPLIB_ZLIB_SUPPORT
                             CPPHTTPLIB_BROTLI_SUPPORT)
  target_link_libraries(httplib INTERFACE ${HTTPLIB_LIBRARY})

  find_path(CRYPT_INCLUDE_DIR crypt.h REQUIRED)
  find_library(CRYPT_LIBRARY NAMES crypt libcrypt.so.1 REQUIRED)
  add_library(libcrypt INTERFACE)
  target_include_directories(libcrypt SYSTEM INTERFACE ${CRYPT_INCLUDE_DIR})
  target_link_libraries(libcrypt INTERFACE ${CRYPT_LIBRARY})
endif()
