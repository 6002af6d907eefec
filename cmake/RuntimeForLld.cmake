# lld takes the unwind tables of a function in a COMDAT section by a symbol of their own, and those symbols were stripped from
# Debian's run-time library: an exception that passes through one of its functions, as when a text finds no memory to grow,
# ends the process. This makes a copy whose tables are in no COMDAT group; lld leaves them where they are.
#
# Sets SELVANE_RUNTIME_FOR_LLD to the folder of the copy.

include_guard(GLOBAL)

set(SELVANE_RUNTIME_FOR_LLD "${CMAKE_BINARY_DIR}/runtime")
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++.a
  OUTPUT_VARIABLE library OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if("${library}" IS_NEWER_THAN "${SELVANE_RUNTIME_FOR_LLD}/libstdc++.a")
  file(MAKE_DIRECTORY "${SELVANE_RUNTIME_FOR_LLD}")
  execute_process(
    COMMAND x86_64-w64-mingw32-objcopy
      --set-section-flags .pdata$*=alloc,readonly,data,load --set-section-flags .xdata$*=alloc,readonly,data,load
      "${library}" "${SELVANE_RUNTIME_FOR_LLD}/libstdc++.a"
    COMMAND_ERROR_IS_FATAL ANY)
endif()
