# Cross-compiles for Windows with Debian's g++-mingw-w64-x86-64-posix. The core needs nothing else:
#   cmake -S . -B build/mingw --toolchain cmake/mingw-w64.cmake -D MACT_WINDOWS=OFF -D MACT_CLI=OFF -D MACT_TESTS=OFF
#   cmake --build build/mingw --parallel
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries and headers of this system are not those of Windows.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
