# Cross-compiles for Windows with Debian's g++-mingw-w64-x86-64-posix. Used by .ci/windows, which runs the core's tests.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Only libraries and headers for Windows, not this system's own. MACT_WINDOWS_LIBRARIES: more folders of them, with Qt,
# GoogleTest and CLI11.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACT_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH ${MACT_WINDOWS_LIBRARIES} /usr/x86_64-w64-mingw32)
list(PREPEND CMAKE_PREFIX_PATH ${MACT_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs that need no DLLs next to them; tests can run if Wine is installed.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
find_program(wine NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(wine)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${wine}")
endif()
