# Toolchain: 64-bit Windows with MinGW-w64 (posix threads), as Debian packages it.
#
# QT6WIN is the prefix of a Qt 6 built for Windows, of the same version as the build machine's own,
# whose moc is used; WINE_RUN a program that runs Windows programs. Both come from the environment
# or as -D variables; scripts/windows sets them.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10.0)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

foreach(name QT6WIN WINE_RUN)
  if(NOT DEFINED ${name} AND DEFINED ENV{${name}})
    set(${name} $ENV{${name}})
  endif()
endforeach()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QT6WIN WINE_RUN)

# Libraries and packages are Windows ones, programs are the build machine's.
set(CMAKE_FIND_ROOT_PATH ${QT6WIN} /usr/${triple})
if(QT6WIN)
  list(APPEND CMAKE_PREFIX_PATH ${QT6WIN})
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(QT_HOST_PATH /usr CACHE PATH "Where the build machine's Qt tools are")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "Their CMake packages")

if(WINE_RUN)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_RUN})
endif()
