# 64-bit Windows with Debian's mingw-w64. The -posix compilers are named in full because the default
# alternative uses the win32 thread model, which has no std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

include("${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake")
