# How everything in the tree is compiled.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
                    -Wimplicit-fallthrough -Werror)

# Positions come from files and may be any 32-bit number: their sums wrap, as they would in the
# game's player, instead of being undefined.
add_compile_options(-fwrapv)

option(QUILT_SANITIZE "Address and undefined behaviour sanitizers" OFF)
if(QUILT_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(QUILT_SANITIZED)
endif()

option(QUILT_FUZZ "The fuzzers; needs clang" OFF)
if(QUILT_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

option(QUILT_COVERAGE "Count the lines that the tests run; needs g++" OFF)
if(QUILT_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# What a message says of a place in the code begins at this folder, wherever it was built.
file(RELATIVE_PATH from_build ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
string(REGEX REPLACE "([^/])$" "\\1/" from_build "${from_build}")
add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/= -fmacro-prefix-map=${from_build}=)

find_program(CCACHE ccache)
if(CCACHE)
  # What uses a precompiled header is found again, too.
  list(PREPEND CCACHE env CCACHE_SLOPPINESS=pch_defines,time_macros)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
