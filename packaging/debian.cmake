# What an installation on Linux holds, and the Debian package that `cpack` makes of it.
set(maintainer "The Kestrin developers <${KESTRIN_SUPPORT_ADDRESS}>")
set(documents ${PROJECT_BINARY_DIR}/documents)
set(doc share/doc/kestrin)

# A licence in the form that packages state it in: indented, a dot for an empty line.
function(read_licence file text holder)
  file(STRINGS ${file} lines)
  set(licence "")
  foreach(line IN LISTS lines)
    if(line STREQUAL "")
      set(line .)
    endif()
    if(line MATCHES "^Copyright \\(c\\) (.*)$")
      set(${holder} "${CMAKE_MATCH_1}" PARENT_SCOPE)
    endif()
    string(APPEND licence " ${line}\n")
  endforeach()
  set(${text} "${licence}" PARENT_SCOPE)
endfunction()
read_licence(LICENSE KESTRIN_LICENCE KESTRIN_COPYRIGHT)
# The renderer is compiled into the program.
read_licence(${PROJECT_BINARY_DIR}/Headless/render/thorvg/package/LICENSE RENDERER_LICENCE RENDERER_COPYRIGHT)
execute_process(COMMAND date --utc --rfc-email --date=${KESTRIN_DATE} OUTPUT_VARIABLE KESTRIN_LONG_DATE
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(CONFIGURE OUTPUT ${documents}/copyright CONTENT
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: @PROJECT_NAME@

Files: *
Copyright: @KESTRIN_COPYRIGHT@
License: Expat
@KESTRIN_LICENCE@
Files: usr/bin/kestrin
Copyright: @KESTRIN_COPYRIGHT@
 @RENDERER_COPYRIGHT@ (the renderer, ThorVG)
 2018 WebAssembly Community Group participants (its runtime)
License: Expat and renderer and Apache-2.0
Comment: The program holds ThorVG, under the licence renderer, and the runtime of wasm2c, under Apache-2.0, whose text
 is in /usr/share/common-licenses/Apache-2.0.

License: renderer
@RENDERER_LICENCE@" @ONLY)
file(CONFIGURE OUTPUT ${documents}/changelog CONTENT
"kestrin (@PROJECT_VERSION@) unstable; urgency=medium

  * Version @PROJECT_VERSION@. What is new stands in NEWS.gz.

 -- @maintainer@  @KESTRIN_LONG_DATE@
" @ONLY)
configure_file(CHANGELOG.md ${documents}/NEWS COPYONLY)

set(packed "")
foreach(file ${documents}/changelog ${documents}/NEWS ${PROJECT_BINARY_DIR}/described/kestrin.1)
  get_filename_component(name ${file} NAME)
  add_custom_command(OUTPUT ${documents}/${name}.gz
    COMMAND gzip -9 -n < ${file} > ${documents}/${name}.gz DEPENDS ${file})
  list(APPEND packed ${documents}/${name}.gz)
endforeach()
add_custom_target(documents ALL DEPENDS ${packed})
add_dependencies(documents descriptions)

install(TARGETS kestrin RUNTIME DESTINATION bin)
install(TARGETS Kestrin LIBRARY DESTINATION lib/kestrin)
install(FILES ${documents}/kestrin.1.gz DESTINATION share/man/man1)
install(FILES ${PROJECT_BINARY_DIR}/described/kestrin.bash DESTINATION share/bash-completion/completions
        RENAME kestrin)
install(FILES ${PROJECT_BINARY_DIR}/described/_kestrin DESTINATION share/zsh/vendor-completions)
install(FILES ${PROJECT_BINARY_DIR}/described/kestrin.fish DESTINATION share/fish/vendor_completions.d)
install(FILES ${documents}/copyright ${documents}/changelog.gz ${documents}/NEWS.gz DESTINATION ${doc})
install(FILES examples/lanterns.json DESTINATION ${doc}/examples)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrin)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "crops Lottie compositions to their visible content")
set(CPACK_PACKAGE_DESCRIPTION
"Resizes the compositions of Lottie animations to what is visible in them and
corrects every layer that shows them, so that nothing on screen shifts. The
program also compares, renders and describes animations, and runs without a
display.")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${maintainer}")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
