# Builds for another Linux with Debian's cross compilers: ZN_TRIPLE names the machine. Where qemu's emulation of
# its programs is installed, it runs what is built.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZN_TRIPLE)
string(REGEX MATCH "^[^-]+" machine ${ZN_TRIPLE})
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${machine})
set(CMAKE_C_COMPILER ${ZN_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${ZN_TRIPLE}-g++)

set(CMAKE_FIND_ROOT_PATH /usr/${ZN_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

string(REPLACE "powerpc" "ppc" emulated ${machine})
find_program(ZN_QEMU qemu-${emulated})
if(ZN_QEMU)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${ZN_QEMU} -L /usr/${ZN_TRIPLE})
endif()
