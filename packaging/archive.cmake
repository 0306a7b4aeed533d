# cpack: one archive with the plug-in, how to install it, and the licence.
configure_file(${PROJECT_SOURCE_DIR}/packaging/INSTALL.txt.in ${PROJECT_BINARY_DIR}/INSTALL.txt @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/INSTALL.txt DESTINATION . COMPONENT texts)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION . COMPONENT texts RENAME LICENSE.txt)

if(APPLE)
  set(system macos)
else()
  set(system windows)
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${system})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
include(CPack)
