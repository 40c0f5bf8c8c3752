# find_package(dashcam-platform), for the vendor of a platform library:
#   dashcam-platform::headers             what it has to declare
#   add_platform_check(NAME LIBRARY...)   the program that tries it
if(NOT TARGET dashcam-platform::headers)
  add_library(dashcam-platform::headers INTERFACE IMPORTED)
  target_include_directories(dashcam-platform::headers INTERFACE ${CMAKE_CURRENT_LIST_DIR}/../../../include/dashcam-platform)
endif()

function(add_platform_check name)
  set(source ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../../dashcam-platform)
  file(GLOB sources ${source}/platform/check/*.cpp)
  find_package(Threads REQUIRED)
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${source})
  target_compile_features(${name} PRIVATE cxx_std_17)
  target_compile_definitions(${name} PRIVATE DASHCAM_VERSION="${dashcam-platform_VERSION}")
  target_link_libraries(${name} PRIVATE dashcam-platform::headers Threads::Threads ${ARGN})
endfunction()
