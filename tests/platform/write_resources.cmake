# cmake -DNAME=... -DFOLDER=... -P: writes the resources of a plug-in of that name, macOS's as it is shipped
# and the numbers of the Windows one.
include(${CMAKE_CURRENT_LIST_DIR}/../../packaging/identity.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/../../packaging/pipl.cmake)
file(MAKE_DIRECTORY ${FOLDER})
kestrin_mac_resource_file(${FOLDER}/${NAME}.rsrc ${NAME})
kestrin_pipl_words(words ${NAME})
file(WRITE ${FOLDER}/${NAME}.words ${words})
