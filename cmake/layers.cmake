# One static library per layer; its link line is the list of layers that it may look at.

# precompiled(<target> <header>...): parses the headers once for all files of the target. Under the
# sanitizers alone, with which the build takes longest: the others show that each file includes what
# it uses.
function(precompiled target)
  if(QUILT_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    target_precompile_headers(
      ${target} PRIVATE ${ARGN} <algorithm> <filesystem> <fstream> <functional> <map> <memory>
                        <string> <vector>)
    target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
  endif()
endfunction()

# quilt_layer(<name> <library>...): a static library of the .cpp files of the present folder
# (not of the folders below it). A new file needs no line here or there.
function(quilt_layer name)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARGN})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  precompiled(${name})
endfunction()
