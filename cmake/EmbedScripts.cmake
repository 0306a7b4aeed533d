# kestrin_embed_scripts(HEADER FILE...): writes HEADER with one NUL-terminated char array for each script,
# named after the file, byte for byte. Only @KESTRIN_SUPPORT_ADDRESS@ and @KESTRIN_HELP_PAGE@ are filled in.
function(kestrin_embed_scripts header)
  # Both stand inside quoted script text, some of which is a printf template.
  foreach(setting KESTRIN_SUPPORT_ADDRESS KESTRIN_HELP_PAGE)
    if("${${setting}}" STREQUAL "" OR "${${setting}}" MATCHES "[\"'\\%\r\n]")
      message(FATAL_ERROR "${setting} must not be empty nor hold quotes, backslashes, percent signs or line "
                          "breaks, but is: ${${setting}}")
    endif()
  endforeach()

  set(content "#pragma once\n\nnamespace scripts {\n")
  foreach(script IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${script}")
    file(READ "${script}" text)
    string(REPLACE "@KESTRIN_SUPPORT_ADDRESS@" "${KESTRIN_SUPPORT_ADDRESS}" text "${text}")
    string(REPLACE "@KESTRIN_HELP_PAGE@" "${KESTRIN_HELP_PAGE}" text "${text}")
    string(HEX "${text}" bytes)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    get_filename_component(name "${script}" NAME_WE)
    string(APPEND content "inline constexpr char ${name}[] = {${bytes}0};\n")
  endforeach()
  string(APPEND content "}  // namespace scripts\n")
  file(CONFIGURE OUTPUT "${header}" CONTENT "${content}" @ONLY)
endfunction()
