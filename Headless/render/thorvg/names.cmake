# What stands between the module's short names and ours: names.h, and unused_imports.cpp with every function that the
# module wants of its surroundings and never calls here.
#
# The functions' names come from the package's own glue. What the glue names nowhere was looked up in it, in version
# 1.0.6; another version needs that again.
if(NOT version STREQUAL "1.0.6")
  message(FATAL_ERROR "Headless/render/thorvg/names.cmake knows version 1.0.6 of the renderer only")
endif()
set(functions
    free malloc tvg_engine_init tvg_swcanvas_create tvg_swcanvas_set_target tvg_canvas_add tvg_canvas_remove
    tvg_canvas_update tvg_canvas_draw tvg_canvas_sync tvg_animation_new tvg_animation_get_picture
    tvg_animation_set_frame tvg_animation_del tvg_picture_load_data tvg_picture_set_size tvg_font_load_data)
set(looked_up construct=Xb set_thrown=Oe restore_stack=Qe save_stack=Se memory=Wb)
set(answered u j g ya W b c m B S wa sb xa qb wb ub xb a Bb tb Ab zb yb vb
             ua nb mb ib F kb ta Da y o lb V Vb ob Ia Ma)  # in Imports.cpp

file(READ ${made}/package/dist/webcanvas.js glue)
file(READ ${made}/module.h header)

foreach(function ${functions})
  if(NOT glue MATCHES "r\\._${function}=e\\.([A-Za-z0-9_$]+)")
    message(FATAL_ERROR "The renderer's package has no function ${function}")
  endif()
  list(APPEND looked_up "${function}=${CMAKE_MATCH_1}")
endforeach()
set(names "// The module's functions, by the names that the package's glue gives them.\n")
foreach(pair ${looked_up})
  string(REPLACE "=" ";" pair ${pair})
  list(GET pair 0 name)
  list(GET pair 1 short)
  string(REPLACE "Z" "Z5A" short "${short}")
  string(REPLACE "$" "Z24" short "${short}")
  string(FIND "${header}" " Z_thorvgZ_${short}(" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "The renderer's module does not export ${name}")
  endif()
  string(APPEND names "#define module_${name} Z_thorvgZ_${short}\n")
endforeach()
file(CONFIGURE OUTPUT ${made}/names.h CONTENT "${names}" @ONLY)

set(unused "#include \"Module.h\"\n\nextern \"C\" {\n")
string(REGEX MATCHALL "/\\* import: 'a' '[^']+' \\*/\n[^;]+" imports "${header}")
foreach(import ${imports})
  string(REGEX MATCH "'a' '([^']+)' \\*/\n([a-z0-9]+) ([A-Za-z0-9_]+)\\((.*)\\)" import "${import}")
  if(CMAKE_MATCH_1 IN_LIST answered)
    list(REMOVE_ITEM answered ${CMAKE_MATCH_1})
    continue()
  endif()
  set(name ${CMAKE_MATCH_1})
  set(result ${CMAKE_MATCH_2})
  set(symbol ${CMAKE_MATCH_3})
  string(REGEX REPLACE "^struct Z_a_instance_t\\*" "Z_a_instance_t* host" arguments "${CMAKE_MATCH_4}")
  string(APPEND unused "${result} ${symbol}(${arguments}) { refuse_import(host, \"${name}\"); }\n")
endforeach()
string(APPEND unused "}\n")
if(answered)
  message(FATAL_ERROR "The renderer's module imports no ${answered}")
endif()
file(CONFIGURE OUTPUT ${made}/unused_imports.cpp CONTENT "${unused}" @ONLY)
