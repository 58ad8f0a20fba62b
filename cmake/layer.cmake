# kel_headers(TARGET SCOPE FILE...): the headers of a folder, which becomes their include root. The target
# all_verify_interface_header_sets compiles each alone.
function(kel_headers target scope)
    target_sources(${target} ${scope} FILE_SET HEADERS BASE_DIRS ${CMAKE_CURRENT_SOURCE_DIR} FILES ${ARGN})
endfunction()

# kel_layer(NAME HEADERS ... SOURCES ... USES ...): one static library for a folder of the viewer. Its include root is
# its own folder, and it sees those of the folders that it USES: an include in the wrong direction does not compile.
function(kel_layer name)
    cmake_parse_arguments(arg "" "" "HEADERS;SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    kel_headers(${name} PUBLIC ${arg_HEADERS})
    target_link_libraries(${name} PUBLIC ${arg_USES} PRIVATE kel_options)
endfunction()
