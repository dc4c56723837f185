# Cross build for Windows with Debian's mingw-w64 (posix threads):
#   cmake --preset win64 && cmake --build --preset win64
#   cmake --preset win32 && cmake --build --preset win32
set(CMAKE_SYSTEM_NAME Windows)
if(NOT DEFINED ZUVI_MINGW_ARCH)
  set(ZUVI_MINGW_ARCH x86_64)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZUVI_MINGW_ARCH)
set(CMAKE_C_COMPILER ${ZUVI_MINGW_ARCH}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZUVI_MINGW_ARCH}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${ZUVI_MINGW_ARCH}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZUVI_MINGW_ARCH}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
