# Builds for 64-bit Windows on Linux, with Debian's mingw-w64. Where wine is installed, it runs what is built.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(prefix x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${prefix}-g++-posix)
set(CMAKE_RC_COMPILER ${prefix}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs carry the compiler's own libraries with them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

find_program(ZN_WINE NAMES wine64 wine)
if(ZN_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${ZN_WINE})
endif()
