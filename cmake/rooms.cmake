# add_room(name LIBRARIES ...): a folder's sources as one static library. Every file of the folder belongs to it, so a
# new class needs no line here. What it includes of other rooms is what it links: a room that reaches upwards does not link.
function(add_room name)
  cmake_parse_arguments(ROOM "" "" "LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ROOM_LIBRARIES})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()
