# Writes the plug-in's PiPL: the properties that a host reads before it runs any of the plug-in's code.
#
# macOS wants them in a resource file beside the binary, big-endian; Windows as a resource of the module,
# little-endian, four-letter codes included. Bytes are put together as hexadecimal text; the name and the other
# texts are ASCII.

# VALUE as four bytes.
function(kestrin_hex_number out order value)
  math(EXPR number "${value} + 0x100000000" OUTPUT_FORMAT HEXADECIMAL)  # the 1 keeps the leading zeros
  string(SUBSTRING ${number} 3 8 hex)
  if(order STREQUAL little)
    string(REGEX REPLACE "(..)(..)(..)(..)" "\\4\\3\\2\\1" hex ${hex})
  endif()
  set(${out} ${hex} PARENT_SCOPE)
endfunction()

function(kestrin_hex_code out order code)
  string(HEX ${code} hex)
  kestrin_hex_number(hex ${order} 0x${hex})
  set(${out} ${hex} PARENT_SCOPE)
endfunction()

# TEXT behind a byte with its length.
function(kestrin_hex_pascal_string out text)
  string(LENGTH "${text}" length)
  if(length EQUAL 0 OR length GREATER 47)
    message(FATAL_ERROR "A host shows 1 to 47 characters, but this is ${length}: ${text}")
  endif()
  math(EXPR prefix "256 + ${length}" OUTPUT_FORMAT HEXADECIMAL)
  string(SUBSTRING ${prefix} 3 2 prefix)
  string(HEX "${text}" hex)
  set(${out} ${prefix}${hex} PARENT_SCOPE)
endfunction()

# One property. Data is padded to four bytes on both systems, but only Windows counts the padding.
function(kestrin_hex_property out order key data)
  string(LENGTH "${data}" digits)
  math(EXPR length "${digits} / 2")
  math(EXPR padding "(4 - ${length} % 4) % 4")
  string(REPEAT 00 ${padding} zeros)
  if(order STREQUAL little)
    math(EXPR length "${length} + ${padding}")
  endif()
  kestrin_hex_code(vendor ${order} 8BIM)
  kestrin_hex_code(key ${order} ${key})
  kestrin_hex_number(length ${order} ${length})
  set(${out} ${vendor}${key}00000000${length}${data}${zeros} PARENT_SCOPE)
endfunction()

# kestrin_pipl(OUT big|little NAME): the whole PiPL as hexadecimal text.
function(kestrin_pipl out order name)
  kestrin_hex_code(kind ${order} ${KESTRIN_KIND})
  kestrin_hex_pascal_string(pascal_name "${name}")
  kestrin_hex_pascal_string(category "${KESTRIN_CATEGORY}")
  kestrin_hex_number(version ${order} ${KESTRIN_INTERFACE_VERSION})
  set(properties kind=${kind} name=${pascal_name} catg=${category} vers=${version})
  if(order STREQUAL little)
    set(prefix 0100)
    string(HEX ${KESTRIN_ENTRY_POINT} entry)
    list(APPEND properties 8664=${entry}00)
  else()
    set(prefix "")
    kestrin_hex_pascal_string(entry ${KESTRIN_ENTRY_POINT})
    list(APPEND properties ma64=${entry} mi64=${entry})  # arm64 and x86_64
  endif()

  list(LENGTH properties count)
  kestrin_hex_number(count ${order} ${count})
  set(hex ${prefix}00000000${count})
  foreach(property IN LISTS properties)
    string(REGEX MATCH "^(....)=(.*)$" matched ${property})
    kestrin_hex_property(property ${order} ${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
    string(APPEND hex ${property})
  endforeach()
  set(${out} ${hex} PARENT_SCOPE)
endfunction()

# kestrin_pipl_words(OUT NAME): the Windows PiPL as the numbers of a resource script, 16 bits each.
function(kestrin_pipl_words out name)
  kestrin_pipl(pipl little "${name}")
  string(REGEX REPLACE "(..)(..)" "0x\\2\\1, " words ${pipl})
  string(REGEX REPLACE ", $" "" words ${words})
  set(${out} ${words} PARENT_SCOPE)
endfunction()

# kestrin_mac_resource_file(FILE NAME): a resource file that holds the macOS PiPL and nothing else. Left
# untouched where it is the same already.
function(kestrin_mac_resource_file file name)
  kestrin_pipl(pipl big "${name}")
  string(LENGTH ${pipl} digits)
  math(EXPR pipl_size "${digits} / 2")
  math(EXPR data_size "4 + ${pipl_size}")
  set(data_offset 256)
  math(EXPR map_offset "${data_offset} + ${data_size}")
  kestrin_hex_number(pipl_size_hex big ${pipl_size})
  kestrin_hex_number(data_size_hex big ${data_size})
  kestrin_hex_number(data_offset_hex big ${data_offset})
  kestrin_hex_number(map_offset_hex big ${map_offset})
  kestrin_hex_number(map_size_hex big 50)
  kestrin_hex_code(type big PiPL)
  kestrin_hex_number(id big ${KESTRIN_RESOURCE_ID})
  string(SUBSTRING ${id} 4 4 id)
  string(REPEAT 00 240 reserved)

  set(header ${data_offset_hex}${map_offset_hex}${data_size_hex}${map_size_hex})
  string(CONCAT map
    ${header} 00000000 0000 0000  # next map, file, attributes: for the system's use
    001c 0032                     # where the types and the (absent) names start
    0000 ${type} 0000 000a        # one type, of it one resource, which stands after this list
    ${id} ffff 00 000000 00000000)  # no name, no attributes, first in the data
  set(hex ${header}${reserved}${pipl_size_hex}${pipl}${map})

  # Text functions cannot write zero bytes; printf, which every such system has, can.
  string(REGEX MATCHALL ".." bytes ${hex})
  set(escaped "")
  foreach(byte IN LISTS bytes)
    math(EXPR octal "0x${byte} / 64 * 100 + 0x${byte} / 8 % 8 * 10 + 0x${byte} % 8")
    string(APPEND escaped "\\${octal}")
  endforeach()
  execute_process(COMMAND printf ${escaped} OUTPUT_FILE ${file}.new COMMAND_ERROR_IS_FATAL ANY)
  file(SIZE ${file}.new written)
  math(EXPR expected "${map_offset} + 50")
  if(NOT written EQUAL expected)
    message(FATAL_ERROR "printf wrote ${written} bytes instead of ${expected}")
  endif()
  file(COPY_FILE ${file}.new ${file} ONLY_IF_DIFFERENT)
  file(REMOVE ${file}.new)
endfunction()
