# 32-bit programs that run on a 64-bit PC as they are: they find the sysroot's loader and libraries by themselves. For tests of
# what differs on a 32-bit board.
set(DEBIAN_ARCHITECTURE i386)
set(DEBIAN_TRIPLE i386-linux-gnu)
set(COMPILER_TRIPLE i686-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
cmake_path(SET CMAKE_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/i386)
string(JOIN " " CMAKE_EXE_LINKER_FLAGS_INIT -Wl,--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux.so.2
  -Wl,--disable-new-dtags -Wl,-rpath,${CMAKE_SYSROOT}/usr/lib/${DEBIAN_TRIPLE})
set(CMAKE_CROSSCOMPILING_EMULATOR env QT_PLUGIN_PATH=${CMAKE_SYSROOT}/usr/lib/${DEBIAN_TRIPLE}/qt6/plugins)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")  # floating point as on any other machine
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
