# Most of a build is reading headers. These are read once for all; a target uses them by
#   target_precompile_headers(NAME REUSE_FROM precompiled)
# and every file still includes what it uses. The list is measured: a shorter one costs more, one with all of QtWidgets too.
# The compiler refuses (-Winvalid-pch) one with a definition that the file lacks, so this target has only those that every
# target has: Qt6::Core's, and of Gui and Widgets the headers alone.
file(CONFIGURE OUTPUT precompiled.cpp CONTENT "")
add_library(precompiled OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled.cpp)
set_target_properties(precompiled PROPERTIES AUTOMOC OFF)
target_link_libraries(precompiled PRIVATE Qt6::Core)
target_include_directories(precompiled SYSTEM PRIVATE
  $<TARGET_PROPERTY:Qt6::Gui,INTERFACE_INCLUDE_DIRECTORIES> $<TARGET_PROPERTY:Qt6::Widgets,INTERFACE_INCLUDE_DIRECTORIES>)
target_precompile_headers(precompiled PRIVATE
  <QDateTime> <QDir> <QFile> <QJsonDocument> <QJsonObject> <QLabel> <QPainter> <QPixmap>
  <QRegularExpression> <QTimer> <QWidget> <algorithm> <array> <cmath> <memory> <mutex> <vector>)
