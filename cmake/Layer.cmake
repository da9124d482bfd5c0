# kova_layer(NAME SOURCES ... BELOW ...): one static library per layer. Only targets that link it can
# include its headers, as "NAME/header.h", so an include from a layer above does not build.
function(kova_layer name)
  cmake_parse_arguments(layer "" "" "SOURCES;BELOW" ${ARGN})
  set(root ${CMAKE_BINARY_DIR}/layers/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${name} ${root}/${name} SYMBOLIC)
  list(TRANSFORM layer_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${name}/)
  list(TRANSFORM layer_BELOW PREPEND kova_)
  add_library(kova_${name} STATIC ${layer_SOURCES})
  target_include_directories(kova_${name} PUBLIC ${root})
  target_link_libraries(kova_${name} PUBLIC ${layer_BELOW} PRIVATE kova_compiler)
endfunction()
