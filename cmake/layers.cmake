# One static library per layer; its link line is the list of layers that it may look at.

# quilt_layer(<name> <library>...): a static library of the .cpp files of the present folder
# (not of the folders below it). A new file needs no line here or there.
function(quilt_layer name)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARGN})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()
