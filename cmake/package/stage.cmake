# Runs while the files of a package are put together in `folder`: signs the programs, says in SIGNATURE.txt whether they
# are signed, and lists everything in an SPDX document. Wants also: version, programs, sign, components (a file of rows
# "name|version|licence|origin").

set(signed "")
foreach(program IN LISTS programs)
  list(APPEND signed "${folder}/${program}")
endforeach()
execute_process(COMMAND "${sign}" ${signed} COMMAND_ERROR_IS_FATAL ANY)

if("$ENV{SELVANE_SIGN_CERTIFICATE}" STREQUAL "")
  set(text "The files of this package are not signed.

On Windows 11 that means:
- Files from a downloaded archive are marked as such. Clear the mark before unpacking (Properties of the archive,
  Unblock), or SmartScreen stops the programs at their first start. The installer is stopped the same way:
  \"More info\", \"Run anyway\".
- When the installer asks for an administrator's consent, it names an unknown publisher.
- Smart App Control, where it is on, does not load an unsigned DLL, whoever asks for it; there are no exceptions
  for one file.
- Rules of an organisation (App Control for Business, AppLocker) and hosts that take signed libraries only refuse
  it too.
")
else()
  set(text "The programs and libraries of this package and its installer are signed. The signature is shown by
Properties, Digital Signatures.
")
endif()
file(WRITE "${folder}/SIGNATURE.txt" "${text}")

# The SPDX document, version 2.3 in JSON. Names of files and packages hold nothing that JSON would have escaped.
set(document "selvane_page.spdx.json")
file(REMOVE "${folder}/${document}")
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${folder}" "${folder}/*")
list(SORT files)
set(file_rows "")
set(relations "")
set(sums "")
set(number 0)
foreach(file IN LISTS files)
  math(EXPR number "${number} + 1")
  file(SHA1 "${folder}/${file}" sha1)
  file(SHA256 "${folder}/${file}" sha256)
  list(APPEND sums "${sha1}")
  list(APPEND file_rows "    {\"SPDXID\": \"SPDXRef-File-${number}\", \"fileName\": \"./${file}\",
     \"checksums\": [{\"algorithm\": \"SHA1\", \"checksumValue\": \"${sha1}\"},
                   {\"algorithm\": \"SHA256\", \"checksumValue\": \"${sha256}\"}],
     \"licenseConcluded\": \"NOASSERTION\", \"copyrightText\": \"NOASSERTION\"}")
  list(APPEND relations "    {\"spdxElementId\": \"SPDXRef-Product\", \"relationshipType\": \"CONTAINS\", \"relatedSpdxElement\": \"SPDXRef-File-${number}\"}")
endforeach()
list(SORT sums)
list(JOIN sums "" sums)
string(SHA1 verification "${sums}")

set(package_rows "    {\"SPDXID\": \"SPDXRef-Product\", \"name\": \"selvane_page\", \"versionInfo\": \"${version}\",
     \"downloadLocation\": \"NOASSERTION\", \"licenseConcluded\": \"MIT\", \"licenseDeclared\": \"MIT\",
     \"copyrightText\": \"NOASSERTION\", \"filesAnalyzed\": true,
     \"packageVerificationCode\": {\"packageVerificationCodeValue\": \"${verification}\",
                                 \"packageVerificationCodeExcludedFiles\": [\"./${document}\"]}}")
file(STRINGS "${components}" rows)
foreach(row IN LISTS rows)
  string(REPLACE "|" ";" row "${row}")
  list(GET row 0 name)
  list(GET row 1 component_version)
  list(GET row 2 licence)
  list(GET row 3 origin)
  list(APPEND package_rows "    {\"SPDXID\": \"SPDXRef-Library-${name}\", \"name\": \"${name}\", \"versionInfo\": \"${component_version}\",
     \"downloadLocation\": \"NOASSERTION\", \"sourceInfo\": \"${origin}\", \"filesAnalyzed\": false,
     \"licenseConcluded\": \"${licence}\", \"licenseDeclared\": \"${licence}\", \"copyrightText\": \"NOASSERTION\"}")
  list(APPEND relations "    {\"spdxElementId\": \"SPDXRef-Product\", \"relationshipType\": \"STATIC_LINK\", \"relatedSpdxElement\": \"SPDXRef-Library-${name}\"}")
endforeach()

list(JOIN package_rows ",\n" package_rows)
list(JOIN file_rows ",\n" file_rows)
list(JOIN relations ",\n" relations)
string(TIMESTAMP created "%Y-%m-%dT%H:%M:%SZ" UTC)
file(WRITE "${folder}/${document}" "{
  \"spdxVersion\": \"SPDX-2.3\",
  \"dataLicense\": \"CC0-1.0\",
  \"SPDXID\": \"SPDXRef-DOCUMENT\",
  \"name\": \"selvane_page-${version}\",
  \"documentNamespace\": \"urn:selvane_page:${version}:${verification}\",
  \"creationInfo\": {\"created\": \"${created}\", \"creators\": [\"Tool: selvane_page-package\"]},
  \"documentDescribes\": [\"SPDXRef-Product\"],
  \"packages\": [\n${package_rows}\n  ],
  \"files\": [\n${file_rows}\n  ],
  \"relationships\": [\n${relations}\n  ]
}
")
