# Third-party code as interface targets. Rooms link these names and never a package directly, so that
# the native and the cross build differ here only.

# Headers that need no library. The native compiler has /usr/include on its own path. The cross compiler
# must not see it, so it gets a folder that holds nothing but links to the header-only packages.
add_library(selvane_headers INTERFACE)
if(CMAKE_CROSSCOMPILING)
  set(header_links "${CMAKE_BINARY_DIR}/deps/include")
  file(MAKE_DIRECTORY "${header_links}")
  foreach(package boost fmt gsl CLI nlohmann)
    if(NOT EXISTS "/usr/include/${package}")
      message(FATAL_ERROR "/usr/include/${package} is missing: run scripts/setup")
    endif()
    file(CREATE_LINK "/usr/include/${package}" "${header_links}/${package}" SYMBOLIC)
  endforeach()
  target_include_directories(selvane_headers SYSTEM INTERFACE "${header_links}")
endif()

function(selvane_header_only target)
  add_library(${target} INTERFACE)
  target_link_libraries(${target} INTERFACE selvane_headers)
endfunction()

# fmt, compiled once and not in every source that formats something.
add_library(selvane_fmt_static STATIC EXCLUDE_FROM_ALL "${CMAKE_CURRENT_LIST_DIR}/fmt_library.cpp")
target_link_libraries(selvane_fmt_static PUBLIC selvane_headers)
target_compile_features(selvane_fmt_static PUBLIC cxx_std_17)
# With a fixed separator fmt has no need of the run-time library's locales, which are half a megabyte.
target_compile_definitions(selvane_fmt_static PUBLIC FMT_STATIC_THOUSANDS_SEPARATOR=',')
# Nobody waits for texts, and made for speed they would be a tenth of the DLL.
target_compile_options(selvane_fmt_static PRIVATE -Os -ffunction-sections -fdata-sections)
add_library(selvane_fmt INTERFACE)
target_link_libraries(selvane_fmt INTERFACE selvane_fmt_static)

selvane_header_only(selvane_outcome) # Boost headers: Outcome and Container
selvane_header_only(selvane_gsl)
selvane_header_only(selvane_cli11)
selvane_header_only(selvane_json)

# pugixml. For Windows it is compiled from the source package that scripts/setup fetches.
add_library(selvane_pugixml INTERFACE)
option(SELVANE_PUGIXML_FROM_SOURCE "Compile pugixml for native programs too, as the DLL has it" OFF)
if(CMAKE_CROSSCOMPILING OR SELVANE_PUGIXML_FROM_SOURCE)
  find_path(SELVANE_PUGIXML_SOURCE pugixml.cpp
    PATHS /usr/local/src/selvane_page/pugixml/src
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT SELVANE_PUGIXML_SOURCE)
    message(FATAL_ERROR "the source of pugixml is missing: run scripts/setup")
  endif()
  add_library(selvane_pugixml_static STATIC EXCLUDE_FROM_ALL "${SELVANE_PUGIXML_SOURCE}/pugixml.cpp")
  target_include_directories(selvane_pugixml_static SYSTEM PUBLIC "${SELVANE_PUGIXML_SOURCE}")
  target_compile_features(selvane_pugixml_static PUBLIC cxx_std_17)
  # Nobody uses its streams, and those of the run-time library are larger than all the rest. Its header keeps
  # them, because with them go the traits of its iterators.
  target_compile_definitions(selvane_pugixml_static PRIVATE PUGIXML_NO_STL PUBLIC PUGIXML_NO_XPATH)
  target_compile_options(selvane_pugixml_static PRIVATE -ffunction-sections -fdata-sections)
  target_link_libraries(selvane_pugixml INTERFACE selvane_pugixml_static)
else()
  find_package(pugixml REQUIRED)
  target_link_libraries(selvane_pugixml INTERFACE pugixml::pugixml)
endif()

# GoogleTest and GMock, with a main. Debian brings native libraries and the sources. A machine that only shows the
# pages has neither.
if(CMAKE_CROSSCOMPILING AND NOT EXISTS /usr/src/googletest)
  set(BUILD_TESTING OFF)
elseif(NOT CMAKE_CROSSCOMPILING AND BUILD_TESTING)
  find_package(GTest)
  set(BUILD_TESTING ${GTest_FOUND})
endif()
add_library(selvane_gtest INTERFACE)
if(CMAKE_CROSSCOMPILING AND BUILD_TESTING)
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/deps/googletest" EXCLUDE_FROM_ALL SYSTEM)
  set_target_properties(gtest gmock gtest_main gmock_main PROPERTIES
    ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/deps/lib")
  target_link_libraries(selvane_gtest INTERFACE gmock_main)
elseif(BUILD_TESTING)
  target_link_libraries(selvane_gtest INTERFACE GTest::gmock_main)
else()
  message(STATUS "no tests: they need GoogleTest, which scripts/setup test installs")
endif()

# Google Benchmark, with a main. Measurements are made natively.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(benchmark QUIET)
  if(benchmark_FOUND)
    add_library(selvane_benchmark INTERFACE)
    target_link_libraries(selvane_benchmark INTERFACE benchmark::benchmark_main)
  endif()
endif()
