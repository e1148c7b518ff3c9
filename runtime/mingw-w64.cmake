# For making Windows programs elsewhere, with MinGW-w64: -DCMAKE_TOOLCHAIN_FILE=<this file>.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# Where there are two, only the one with POSIX threads has all of the standard library.
foreach(tool IN ITEMS gcc g++)
  find_program(MINGW_${tool} NAMES x86_64-w64-mingw32-${tool}-posix x86_64-w64-mingw32-${tool} REQUIRED)
endforeach()
set(CMAKE_C_COMPILER ${MINGW_gcc})
set(CMAKE_CXX_COMPILER ${MINGW_g++})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# No library of the compiler has to stand beside a program.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
