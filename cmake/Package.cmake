# The package: what a user of the pages on Windows needs, as a ZIP and as an installer in the build folder, with the
# SHA-256 sums of both, and the symbols where the compiler writes some.
#
#   cmake --build --preset windows --target package
#
# scripts/lib/sign tells how it is given a certificate. The target is our own and not the one of CPack, which would build
# every test first. CPack makes its target only when its configuration has the usual name.

include_guard(GLOBAL)

set(package_programs selvane_page selvane_host selvane_camera)
if(TARGET selvane_inspect)
  list(APPEND package_programs selvane_inspect)
endif()
foreach(program IN LISTS package_programs)
  install(PROGRAMS "$<TARGET_FILE:${program}>" DESTINATION .)
endforeach()

install(FILES README.md CONTRIBUTING.md CHANGELOG.md SECURITY.md LICENSE DESTINATION .)
install(FILES wire/selvane_driver.h DESTINATION include)
install(FILES examples/driver/sample_driver.cpp DESTINATION examples/driver)
install(DIRECTORY docs DESTINATION .)
install(DIRECTORY descriptions DESTINATION .
  FILES_MATCHING PATTERN "*.md" PATTERN "*.xml" PATTERN "*.memory")

# The pages in a browser, when they were built before (scripts/playground).
set(playground "${PROJECT_SOURCE_DIR}/build/wasm/bin/selvane_playground.html")
install(FILES "${playground}" DESTINATION . OPTIONAL)
install(CODE "
  if(EXISTS \"${playground}\")
    file(INSTALL /usr/share/doc/emscripten/copyright DESTINATION \"\${CMAKE_INSTALL_PREFIX}/licences\"
      RENAME emscripten.txt)
  endif()")

# Whoever updates looks there first.
file(STRINGS CHANGELOG.md entry REGEX "^## \\[${PROJECT_VERSION}\\]")
if(NOT entry)
  message(FATAL_ERROR "CHANGELOG.md has no entry for ${PROJECT_VERSION}")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)

function(selvane_version_of_package variable package)
  execute_process(COMMAND dpkg-query -W -f "\${Version}" "${package}"
    OUTPUT_VARIABLE version RESULT_VARIABLE failure ERROR_QUIET)
  if(failure)
    set(version "unknown")
  endif()
  set(${variable} "${version}" PARENT_SCOPE)
endfunction()

# What is linked in: its name, its licence, the package of Debian that it came from, and the text of the licence, which
# comes from there too, at the time of packaging.
set(doc /usr/share/doc)
file(STRINGS /usr/include/boost/version.hpp boost_version REGEX "define BOOST_LIB_VERSION ")
string(REGEX REPLACE ".*\"([0-9]+)_([0-9]+).*" "\\1.\\2" boost_version "${boost_version}")
set(linked_in
  boost BSL-1.0 "libboost${boost_version}-dev" "${doc}/libboost${boost_version}-dev/copyright"
  cli11 BSD-3-Clause libcli11-dev "${doc}/libcli11-dev/copyright"
  fmt MIT libfmt-dev "${doc}/libfmt-dev/copyright"
  gcc-runtime "GPL-3.0-or-later WITH GCC-exception-3.1" gcc-mingw-w64-x86-64-posix-runtime
    "${doc}/gcc-mingw-w64-base/copyright"
  gsl MIT libmsgsl-dev "${doc}/libmsgsl-dev/copyright"
  mingw-w64 "ZPL-2.1 AND MIT" mingw-w64-x86-64-dev "${doc}/mingw-w64-x86-64-dev/copyright"
  nlohmann-json MIT nlohmann-json3-dev "${doc}/nlohmann-json3-dev/copyright"
  pugixml MIT "pugixml (source)" "${SELVANE_PUGIXML_SOURCE}/../LICENSE.md")
set(components "")
while(linked_in)
  list(POP_FRONT linked_in library licence origin text)
  install(FILES "${text}" DESTINATION licences RENAME "${library}.txt")
  selvane_version_of_package(library_version "${origin}")
  if(library STREQUAL "pugixml")
    file(STRINGS "${SELVANE_PUGIXML_SOURCE}/pugixml.hpp" number REGEX "define PUGIXML_VERSION ")
    string(REGEX REPLACE ".* ([0-9])([0-9][0-9])0 .*" "\\1.\\2" library_version "${number}")
  endif()
  string(APPEND components "${library}|${library_version}|${licence}|Debian package ${origin}\n")
endwhile()
file(WRITE "${CMAKE_BINARY_DIR}/linked-in.txt" "${components}")
# The exception of the run-time library refers to it.
install(FILES /usr/share/common-licenses/GPL-3 DESTINATION licences RENAME gpl-3.txt)

set(sign "${PROJECT_SOURCE_DIR}/scripts/lib/sign")
set(program_files "")
foreach(program IN LISTS package_programs)
  list(APPEND program_files "$<TARGET_FILE_NAME:${program}>")
endforeach()
install(CODE "
  set(folder \"\${CMAKE_INSTALL_PREFIX}\")
  set(version \"${PROJECT_VERSION}\")
  set(programs \"${program_files}\")
  set(sign \"${sign}\")
  set(components \"${CMAKE_BINARY_DIR}/linked-in.txt\")
  include(\"${CMAKE_CURRENT_LIST_DIR}/package/stage.cmake\")")

set(package_name "${PROJECT_NAME}-${PROJECT_VERSION}-win64")
set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_PACKAGE_FILE_NAME "${package_name}")
set(CPACK_PACKAGE_VENDOR Selvane)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Property pages for cameras that describe themselves")
set(CPACK_OUTPUT_CONFIG_FILE "${CMAKE_BINARY_DIR}/CPackWindows.cmake")
set(CPACK_SOURCE_OUTPUT_CONFIG_FILE "${CMAKE_BINARY_DIR}/CPackWindowsSource.cmake")
set(CPACK_VERBATIM_VARIABLES ON)
include(cmake/package/Installer.cmake)
include(CPack)

set(symbols "")
if(SELVANE_PDB)
  foreach(program IN LISTS package_programs)
    list(APPEND symbols "$<TARGET_FILE_DIR:${program}>/${program}.pdb")
  endforeach()
endif()
add_custom_target(package
  COMMAND "${CMAKE_COMMAND}" -E rm -f "${package_name}.zip" "${package_name}.exe" "${package_name}-symbols.zip"
  COMMAND "${CMAKE_CPACK_COMMAND}" --config "${CPACK_OUTPUT_CONFIG_FILE}"
  COMMAND "${CMAKE_COMMAND}" "-Dfolder=${CMAKE_BINARY_DIR}" "-Dname=${package_name}" "-Dsign=${sign}"
    "-Dsymbols=${symbols}" -P "${CMAKE_CURRENT_LIST_DIR}/package/finish.cmake"
  DEPENDS ${package_programs}
  WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
  COMMENT "Packing ${package_name}"
  USES_TERMINAL
  VERBATIM)
