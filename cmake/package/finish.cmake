# Runs when the archives of a package stand in `folder`: packs the symbols beside them where the compiler wrote some, signs
# the installer, and writes the SHA-256 sums. Wants also: name, sign, symbols (files, none without such a compiler).

set(made "${name}.zip" "${name}.exe")
execute_process(COMMAND "${sign}" "${folder}/${name}.exe" COMMAND_ERROR_IS_FATAL ANY)

if(symbols)
  set(archive "${name}-symbols.zip")
  set(bare "")
  foreach(file IN LISTS symbols)
    cmake_path(GET file PARENT_PATH place)
    cmake_path(GET file FILENAME file)
    list(APPEND bare "${file}")
  endforeach()
  execute_process(COMMAND "${CMAKE_COMMAND}" -E tar cf "${folder}/${archive}" --format=zip ${bare}
    WORKING_DIRECTORY "${place}" COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND made "${archive}")
endif()

set(sums "")
foreach(file IN LISTS made)
  file(SHA256 "${folder}/${file}" sum)
  string(APPEND sums "${sum}  ${file}\n")
  message("${folder}/${file}")
endforeach()
file(WRITE "${folder}/${name}.sha256" "${sums}")

if("$ENV{SELVANE_SIGN_CERTIFICATE}" STREQUAL "")
  message("not signed: SELVANE_SIGN_CERTIFICATE names no certificate; SIGNATURE.txt says what Windows 11 does then")
endif()
