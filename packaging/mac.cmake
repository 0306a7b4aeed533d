# Kestrin.plugin: the bundle, with an ad-hoc signature.
find_program(CODESIGN codesign REQUIRED)

set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
kestrin_mac_resource_file(${generated}/${PROJECT_NAME}.rsrc ${PROJECT_NAME})
file(CONFIGURE OUTPUT ${generated}/PkgInfo CONTENT "${KESTRIN_KIND}${KESTRIN_CREATOR}")

target_link_options(Kestrin PRIVATE -Wl,-exported_symbol,_${KESTRIN_ENTRY_POINT})
set_target_properties(Kestrin PROPERTIES
  BUNDLE TRUE
  BUNDLE_EXTENSION plugin
  MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/Info.plist.in
  LINK_DEPENDS "${generated}/${PROJECT_NAME}.rsrc;${generated}/PkgInfo;${PROJECT_SOURCE_DIR}/packaging/Info.plist.in")

# Signed last: the signature seals the whole bundle.
set(contents $<TARGET_BUNDLE_CONTENT_DIR:Kestrin>)
add_custom_command(TARGET Kestrin POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy ${generated}/PkgInfo ${contents}/PkgInfo
  COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Resources
  COMMAND ${CMAKE_COMMAND} -E copy ${generated}/${PROJECT_NAME}.rsrc ${contents}/Resources/${PROJECT_NAME}.rsrc
  COMMAND ${CODESIGN} --force --sign - $<TARGET_BUNDLE_DIR:Kestrin>
  VERBATIM)
install(DIRECTORY $<TARGET_BUNDLE_DIR:Kestrin> DESTINATION . COMPONENT plugin USE_SOURCE_PERMISSIONS)
