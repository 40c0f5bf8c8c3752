# A build for another architecture of Debian 12: what cmake/armhf.cmake, cmake/arm64.cmake and cmake/i386.cmake share. They name the GNU
# triple and the processor; the sysroot is scripts/sysroot's.
set(CMAKE_SYSTEM_NAME Linux)
if(NOT COMPILER_TRIPLE)  # most are called alike
  set(COMPILER_TRIPLE ${DEBIAN_TRIPLE})
endif()
set(CMAKE_C_COMPILER ${COMPILER_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${COMPILER_TRIPLE}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${DEBIAN_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# pkg-config would find this machine's libraries.
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${DEBIAN_TRIPLE}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
# moc and its like run here; their Qt and the sysroot's have the same version.
set(QT_HOST_PATH /usr)
file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*/cmake/Qt6HostInfo)
cmake_path(GET QT_HOST_PATH_CMAKE_DIR PARENT_PATH QT_HOST_PATH_CMAKE_DIR)
