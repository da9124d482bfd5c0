# kova_floor(NAME SOURCES ... BELOW ...): one static library a floor. Its headers are reached as
# "NAME/header.h", and only by targets that link it: an include from a floor above does not build.
function(kova_floor name)
  cmake_parse_arguments(floor "" "" "SOURCES;BELOW" ${ARGN})
  set(root ${CMAKE_BINARY_DIR}/floors/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${name} ${root}/${name} SYMBOLIC)
  list(TRANSFORM floor_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${name}/)
  list(TRANSFORM floor_BELOW PREPEND kova_)
  add_library(kova_${name} STATIC ${floor_SOURCES})
  target_include_directories(kova_${name} PUBLIC ${root})
  target_link_libraries(kova_${name} PUBLIC ${floor_BELOW} PRIVATE kova_compiler)
endfunction()
