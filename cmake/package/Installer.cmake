# The installer, made by NSIS. It is a 64-bit program, as everything that it installs and calls.

set(CPACK_NSIS_EXECUTABLE "${CMAKE_CURRENT_LIST_DIR}/makensis")
set(CPACK_NSIS_PACKAGE_NAME "Selvane camera property pages")
set(CPACK_NSIS_DISPLAY_NAME "Selvane camera property pages")
set(CPACK_NSIS_INSTALL_ROOT "$PROGRAMFILES64")
# Without the version in them, a newer version takes the place of an older one.
set(CPACK_PACKAGE_INSTALL_DIRECTORY "Selvane camera property pages")
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY "selvane_page")
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")

# Where an older version stands, whatever folder was chosen for it; and the uninstaller, which only NSIS has in its hands.
set(CPACK_NSIS_DEFINES "
  InstallDirRegKey HKLM \"Software\\Selvane\\selvane_page\" \"\"
  !uninstfinalize '\"${sign}\" \"%1\"'")

set(CPACK_NSIS_EXECUTABLES_DIRECTORY ".")
set(CPACK_PACKAGE_EXECUTABLES selvane_host "Property pages of the simulated camera")
set(CPACK_NSIS_MENU_LINKS README.md "Read me" docs/driver.md "A driver for the pages")
if(EXISTS "${playground}")
  list(APPEND CPACK_NSIS_MENU_LINKS selvane_playground.html "Pages in a browser")
endif()

set(register "")
set(unregister "")
foreach(module selvane_page.dll selvane_camera.ax)
  string(APPEND register "
  ExecWait '\"$SYSDIR\\regsvr32.exe\" /s \"$INSTDIR\\${module}\"' $0
  StrCmp $0 0 +3
    DetailPrint \"${module} could not be registered: $0\"
    SetErrorLevel 2")
  string(APPEND unregister "
  ExecWait '\"$SYSDIR\\regsvr32.exe\" /s /u \"$INSTDIR\\${module}\"'")
endforeach()
set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS "${register}")
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS "${unregister}")
# The last thing that is done, when the product's own key is gone.
set(CPACK_NSIS_DELETE_ICONS_EXTRA "  DeleteRegKey /ifempty SHCTX \"Software\\Selvane\"")
