# The languages of the interface: Korean, which is in the code, and each that has a file of texts in gui/translations and a column
# of captions in pictures/images.csv.
file(GLOB texts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/gui/translations/dashcam_*.ts)
list(TRANSFORM texts REPLACE ".*/dashcam_(.*)\\.ts$" "\\1")
set(DASHCAM_LANGUAGES "" CACHE STRING "The languages of the interface, for example ko;en; empty: all that there are")
if(NOT DASHCAM_LANGUAGES)
  set(DASHCAM_LANGUAGES ko ${texts})
endif()
foreach(language ${DASHCAM_LANGUAGES})
  if(NOT language IN_LIST texts AND NOT language STREQUAL ko)
    message(FATAL_ERROR "DASHCAM_LANGUAGES: there is no gui/translations/dashcam_${language}.ts.")
  endif()
endforeach()
find_program(LRELEASE NAMES lrelease HINTS /usr/lib/qt6/bin REQUIRED)
