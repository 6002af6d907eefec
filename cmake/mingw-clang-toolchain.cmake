# 64-bit Windows with clang and lld over the headers and libraries of Debian's mingw-w64: a second opinion on the
# code, and the compiler that writes PDB symbols.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

include("${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake")

# clang does not find the folder of g++, which is named after its thread model.
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-libgcc-file-name
  OUTPUT_VARIABLE gcc_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET gcc_folder PARENT_PATH gcc_folder)
# The run-time library is that of g++, whose variables of threads are emulated and whose types are compared in the
# library: g++ knows that without being told.
string(JOIN " " CMAKE_CXX_FLAGS_INIT -femulated-tls
  -D__GXX_TYPEINFO_EQUALITY_INLINE=0 -D__GXX_MERGED_TYPEINFO_NAMES=0
  "-stdlib++-isystem ${gcc_folder}/include/c++"
  "-stdlib++-isystem ${gcc_folder}/include/c++/x86_64-w64-mingw32"
  "-cxx-isystem ${gcc_folder}/include/c++/backward")
foreach(kind EXE SHARED MODULE)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT " -fuse-ld=lld -L${gcc_folder} -lwinpthread")
endforeach()
