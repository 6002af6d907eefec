# The package: what a user of the pages on Windows needs, as a ZIP in the build folder.
#
#   cmake --build --preset windows --target package
#
# The target is our own and not the one of CPack, which would build every test first. CPack makes its target
# only when its configuration has the usual name.

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

# The texts of the licences come from where the code came from, at the time of packaging.
set(doc /usr/share/doc)
file(STRINGS /usr/include/boost/version.hpp boost_version REGEX "define BOOST_LIB_VERSION ")
string(REGEX REPLACE ".*\"([0-9]+)_([0-9]+).*" "\\1.\\2" boost_version "${boost_version}")
set(licences
  boost "${doc}/libboost${boost_version}-dev/copyright"
  cli11 "${doc}/libcli11-dev/copyright"
  fmt "${doc}/libfmt-dev/copyright"
  gcc-runtime "${doc}/gcc-mingw-w64-base/copyright"
  gpl-3 /usr/share/common-licenses/GPL-3 # which the exception of gcc-runtime refers to
  gsl "${doc}/libmsgsl-dev/copyright"
  mingw-w64 "${doc}/mingw-w64-x86-64-dev/copyright"
  nlohmann-json "${doc}/nlohmann-json3-dev/copyright"
  pugixml "${SELVANE_PUGIXML_SOURCE}/../LICENSE.md")
while(licences)
  list(POP_FRONT licences library text)
  install(FILES "${text}" DESTINATION licences RENAME "${library}.txt")
endwhile()

set(CPACK_GENERATOR ZIP)
set(package_name "${PROJECT_NAME}-${PROJECT_VERSION}-win64")
set(CPACK_PACKAGE_FILE_NAME "${package_name}")
set(CPACK_OUTPUT_CONFIG_FILE "${CMAKE_BINARY_DIR}/CPackWindows.cmake")
set(CPACK_SOURCE_OUTPUT_CONFIG_FILE "${CMAKE_BINARY_DIR}/CPackWindowsSource.cmake")
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)

add_custom_target(package
  COMMAND "${CMAKE_CPACK_COMMAND}" --config "${CPACK_OUTPUT_CONFIG_FILE}"
  DEPENDS ${package_programs}
  WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
  COMMENT "Packing ${package_name}.zip"
  USES_TERMINAL
  VERBATIM)
