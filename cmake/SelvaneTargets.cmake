# What every room's CMakeLists.txt uses to make its targets.
#
#   selvane_add_library(<target> [SMALL] [JOINED] SOURCES ... [APART ...] [PUBLIC_LINK ...] [PRIVATE_LINK ...])
#       static library; includes start at the project's root. SMALL: its code waits for people and drivers, so that the
#       DLL has it for size and not for speed. JOINED: no part of the DLL; its sources are compiled together, as those
#       of tests are, but for those APART
#   selvane_add_program(<target> SOURCES ... [LINK ...])
#       program in build/<preset>/bin
#   selvane_ship(<target>)
#       a binary that users get: nothing in it is for debuggers, who have a PDB beside it where the compiler writes one
#   selvane_add_test(<target> SOURCES ... LINK ... [APART ...] [DATA_DESCRIPTIONS] [DESKTOP | OWN_DESKTOP] [OPTIMISED]
#       [LONG] [WATCHES_HEAP])
#       GoogleTest program in bin/, one ctest test per program: a process start under Wine costs time.
#       Its sources are compiled together, several at a time and without the optimiser. APART: sources whose names
#       outside of functions others have too, compiled alone. OPTIMISED: it computes much itself, and waiting for the
#       optimiser is the shorter wait.
#       DESKTOP: it shows windows. Such Windows programs share the desktop of a Wine prefix, one at a time. OWN_DESKTOP: one
#       that takes long, or registers something, has a prefix of its own and runs beside them.
#       LONG: only "scripts/test --all" runs it.
#       WATCHES_HEAP: it has allocation_watch.cpp, which stands between the program and calloc.
#       DATA_DESCRIPTIONS labels tests that read the real descriptions ("ctest -L descriptions").
#       Tests and benchmarks may include "data_paths.h": SELVANE_SOURCE_DIR and SELVANE_SHARED_DESCRIPTIONS.
#   selvane_add_benchmark(<target> SOURCES ... LINK ...)
#       Google Benchmark program in bin/; nothing in a cross build
#   selvane_add_fuzzer(<name>)
#       libFuzzer program bin/<name>_fuzzer of that target in fuzz/fuzz_targets.h; nothing outside the preset linux-fuzz

include_guard(GLOBAL)

option(SELVANE_WERROR "Treat warnings as errors" ON)
option(SELVANE_FUZZ "Build the fuzz targets (clang only)" OFF)
option(SELVANE_JOIN "Compile the sources of tests, programs and everything else outside the DLL together" ON)
option(SELVANE_JOIN_ALL "Compile the sources of the DLL together as well" OFF)
option(SELVANE_PDB "Write symbols as PDB beside each binary that is shipped (clang and lld for Windows only)" OFF)
set(SELVANE_SANITIZE "" CACHE STRING "Value of -fsanitize= for everything of the project")

set(descriptions_default "${PROJECT_SOURCE_DIR}/../shared/descriptions")
if(DEFINED ENV{SELVANE_DESCRIPTIONS})
  set(descriptions_default "$ENV{SELVANE_DESCRIPTIONS}")
endif()
cmake_path(NORMAL_PATH descriptions_default)
set(SELVANE_DESCRIPTIONS "${descriptions_default}" CACHE PATH
  "Folder of real descriptions; tests that need it skip when it is absent")

# Wine shows the root directory as drive Z.
set(data_prefix "")
if(CMAKE_CROSSCOMPILING)
  set(data_prefix "Z:")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/data_paths.h.in" "${PROJECT_BINARY_DIR}/generated/data_paths.h" @ONLY)

set(is_test $<BOOL:$<TARGET_PROPERTY:SELVANE_IS_TEST>>)
add_library(selvane_options INTERFACE)
target_compile_features(selvane_options INTERFACE cxx_std_17)
target_include_directories(selvane_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(selvane_options INTERFACE
  -Wall -Wextra -pedantic -Wundef
  # Joined sources may hide each other's names, and g++ takes each of them for a header.
  $<IF:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>,-Wno-subobject-linkage,-Wshadow>
  -Wcast-align -Wcast-qual -Wold-style-cast
  -Wdouble-promotion -Wconversion -Wsign-conversion
  $<$<BOOL:${SELVANE_WERROR}>:-Werror>
  -fvisibility=hidden)
if(WIN32)
  target_compile_definitions(selvane_options INTERFACE UNICODE _UNICODE)
  # One section per function lets the linker leave out what a program does not use.
  target_compile_options(selvane_options INTERFACE -ffunction-sections -fdata-sections)
  # Nothing is filled in before the targets of jumps: it would be 2 % of the engine.
  target_compile_options(selvane_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-falign-jumps=1>)
  target_link_options(selvane_options INTERFACE -Wl,--gc-sections)
  # Functions with arrays on the stack look whether these were overrun (platform/windows/stack_guard.cpp). More functions
  # with the strong form would be 7 to 9 % of the code, this is 1 to 2 %.
  target_compile_options(selvane_options INTERFACE $<$<NOT:${is_test}>:-fstack-protector>)
endif()
# Test programs are linked by lld where it is installed: the compiler's own linker takes up to half a minute for each.
if(WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  find_program(SELVANE_LLD ld.lld)
endif()
if(WIN32 AND (SELVANE_LLD OR CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
  include(cmake/RuntimeForLld.cmake)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  target_compile_options(selvane_options INTERFACE -Wno-unknown-warning-option)
  if(WIN32)
    target_link_options(selvane_options INTERFACE -nostdlib++)
    target_link_libraries(selvane_options INTERFACE "${SELVANE_RUNTIME_FOR_LLD}/libstdc++.a")
  endif()
endif()
if(SELVANE_PDB)
  # Nobody gets the tests, and the compiler fails at symbols of a test's variables of threads.
  target_compile_options(selvane_options INTERFACE $<$<NOT:${is_test}>:-g -gcodeview>)
endif()
if(EMSCRIPTEN)
  target_compile_options(selvane_options INTERFACE -fwasm-exceptions)
  target_link_options(selvane_options INTERFACE -fwasm-exceptions)
endif()
if(SELVANE_SANITIZE)
  # With its instrumentation g++ takes the inactive members of variants and functions for uninitialised ones.
  target_compile_options(selvane_options INTERFACE
    -fsanitize=${SELVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # It is the product whose behaviour must be defined; in a test the checks double what there is to compile.
    $<${is_test}:-fno-sanitize=undefined>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(selvane_options INTERFACE -fsanitize=${SELVANE_SANITIZE})
  # For tests that repeat themselves at random: there a part of it must do.
  target_compile_definitions(selvane_options INTERFACE SELVANE_SANITIZED)
endif()
if(SELVANE_FUZZ)
  # A compiler cache does not look into the list of functions without counters: its sum is in each command.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/uncounted.txt")
  file(SHA256 "${PROJECT_SOURCE_DIR}/fuzz/uncounted.txt" uncounted)
  target_compile_definitions(selvane_options INTERFACE SELVANE_UNCOUNTED=${uncounted})
endif()

# Most of the time of a compilation goes into headers. Sources that are compiled together read them once.
function(selvane_join target)
  if(SELVANE_JOIN)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10)
  endif()
endfunction()

function(selvane_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "SMALL;JOINED" "" "SOURCES;APART;PUBLIC_LINK;PRIVATE_LINK")
  add_library(${target} STATIC ${ARG_SOURCES} ${ARG_APART})
  set_source_files_properties(${ARG_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  if(ARG_JOINED OR SELVANE_JOIN_ALL)
    selvane_join(${target})
  endif()
  target_link_libraries(${target}
    PUBLIC ${ARG_PUBLIC_LINK}
    PRIVATE ${ARG_PRIVATE_LINK} selvane_options)
  target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
  if(ARG_SMALL AND WIN32)
    target_compile_options(${target} PRIVATE -Os)
  endif()
endfunction()

function(selvane_add_program target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_LINK} selvane_options)
endfunction()

function(selvane_ship target)
  if(SELVANE_PDB)
    # The binary names its PDB without the folder. What is in it for debuggers of another kind comes from the run-time
    # libraries, and this linker keeps it.
    target_link_options(${target} PRIVATE
      "-Wl,--pdb=${CMAKE_BINARY_DIR}/bin/${target}.pdb" "-Wl,-Xlink=-pdbaltpath:%_PDB%")
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_STRIP}" --strip-debug "$<TARGET_FILE:${target}>" VERBATIM)
  else()
    target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-s>)
  endif()
endfunction()

# A locale with a decimal comma and one with 8-bit letters, made from the system's sources of locales where they are
# installed: descriptions must read the same under both.
find_program(LOCALEDEF localedef)
if(BUILD_TESTING AND NOT WIN32 AND LOCALEDEF AND EXISTS /usr/share/i18n/locales/de_DE)
  set(test_locales "${CMAKE_BINARY_DIR}/locales")
  foreach(charmap UTF-8 ISO-8859-1)
    add_custom_command(OUTPUT "${test_locales}/de_DE.${charmap}/LC_NUMERIC"
      COMMAND ${CMAKE_COMMAND} -E make_directory "${test_locales}"
      COMMAND ${LOCALEDEF} --quiet -i de_DE -f ${charmap} "${test_locales}/de_DE.${charmap}"
      COMMENT "Making the locale de_DE.${charmap}")
    list(APPEND test_locale_files "${test_locales}/de_DE.${charmap}/LC_NUMERIC")
  endforeach()
  add_custom_target(test_locales ALL DEPENDS ${test_locale_files})
endif()

function(selvane_add_test target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "DATA_DESCRIPTIONS;DESKTOP;OWN_DESKTOP;OPTIMISED;LONG;PORTABLE;WATCHES_HEAP" "" "SOURCES;LINK;APART")
  if(NOT BUILD_TESTING)
    return()
  endif()
  selvane_add_program(${target} SOURCES ${ARG_SOURCES} ${ARG_APART} LINK ${ARG_LINK} selvane_gtest)
  if(ARG_WATCHES_HEAP)
    # lld wraps the function's imported form as well, and it would call itself. The other linker wants the library of
    # threads behind those that use it.
    target_link_options(${target} PRIVATE $<$<AND:$<BOOL:${WIN32}>,$<CXX_COMPILER_ID:Clang>>:-fuse-ld=bfd;-pthread>
      LINKER:--wrap=calloc)
  elseif(WIN32 AND SELVANE_LLD)
    target_link_options(${target} PRIVATE "SHELL:-wrapper ${PROJECT_SOURCE_DIR}/cmake/link-with-lld"
      -fno-use-linker-plugin)
    target_link_directories(${target} BEFORE PRIVATE "${SELVANE_RUNTIME_FOR_LLD}")
  endif()
  selvane_join(${target})
  if(WIN32 AND NOT ARG_PORTABLE)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:selvane_heap_check>)
    target_link_libraries(${target} PRIVATE ntdll)
  endif()
  set_source_files_properties(${ARG_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  if(NOT ARG_OPTIMISED)
    target_compile_options(${target} PRIVATE -O0)
  endif()
  set_target_properties(${target} PROPERTIES SELVANE_IS_TEST ON)
  target_include_directories(${target} PRIVATE "${PROJECT_BINARY_DIR}/generated")
  set_property(GLOBAL APPEND PROPERTY SELVANE_TESTS ${target})
  if(NOT ARG_PORTABLE AND NOT ARG_LONG)
    set_property(GLOBAL APPEND PROPERTY SELVANE_PLATFORM_TESTS ${target})
  endif()
  add_test(NAME ${target} COMMAND ${target})
  if(TARGET test_locales)
    add_dependencies(${target} test_locales)
    set_tests_properties(${target} PROPERTIES ENVIRONMENT "LOCPATH=${test_locales}")
  endif()
  if(WIN32 AND ARG_OWN_DESKTOP)
    set_tests_properties(${target} PROPERTIES ENVIRONMENT "SELVANE_WINE_PREFIX=test-${target}")
  elseif(WIN32 AND ARG_DESKTOP)
    set_tests_properties(${target} PROPERTIES RESOURCE_LOCK desktop)
  endif()
  # A hang is a failure, not a wait: no test program comes near this.
  set_tests_properties(${target} PROPERTIES TIMEOUT 600)
  if(ARG_DATA_DESCRIPTIONS)
    set_property(TEST ${target} APPEND PROPERTY LABELS descriptions)
  endif()
  if(ARG_PORTABLE AND WIN32)
    set_property(TEST ${target} APPEND PROPERTY LABELS portable)
  endif()
  if(ARG_LONG)
    set_property(TEST ${target} APPEND PROPERTY LABELS long)
  endif()
endfunction()

function(selvane_add_benchmark target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  if(NOT TARGET selvane_benchmark)
    return()
  endif()
  selvane_add_program(${target} SOURCES ${ARG_SOURCES} LINK ${ARG_LINK} selvane_benchmark)
  target_include_directories(${target} PRIVATE "${PROJECT_BINARY_DIR}/generated")
  # The DLL has its run-time library inside, too: a shared one costs a jump for each call, and each result makes one.
  target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc)
endfunction()

function(selvane_add_fuzzer name)
  if(NOT SELVANE_FUZZ)
    return()
  endif()
  selvane_add_program(${name}_fuzzer SOURCES fuzz_main.cpp "${PROJECT_SOURCE_DIR}/tests/adapter/allocation_watch.cpp"
    LINK selvane_fuzz_targets)
  target_compile_definitions(${name}_fuzzer PRIVATE SELVANE_FUZZ_TARGET=${name})
  target_link_options(${name}_fuzzer PRIVATE -fsanitize=fuzzer LINKER:--wrap=calloc)
  add_dependencies(selvane_fuzzers ${name}_fuzzer)
endfunction()
