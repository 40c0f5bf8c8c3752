set(DEBIAN_ARCHITECTURE armhf)
set(DEBIAN_TRIPLE arm-linux-gnueabihf)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
cmake_path(SET CMAKE_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/armhf)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L ${CMAKE_SYSROOT})
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
add_compile_options(-Wno-psabi)  # what compilers before version 9 did is nothing to be warned of
