# Kestrin.aex: a module that needs nothing beside Windows, with its resource inside.
kestrin_pipl_words(KESTRIN_PIPL_WORDS ${PROJECT_NAME})
configure_file(${PROJECT_SOURCE_DIR}/packaging/Kestrin.rc.in ${CMAKE_CURRENT_BINARY_DIR}/generated/Kestrin.rc @ONLY)

target_sources(Kestrin PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/generated/Kestrin.rc)
set_target_properties(Kestrin PROPERTIES SUFFIX .aex)
target_link_options(Kestrin PRIVATE -static $<$<CONFIG:Release>:-s>)
install(TARGETS Kestrin LIBRARY DESTINATION . COMPONENT plugin)
