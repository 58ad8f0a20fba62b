# kel_layer(NAME SOURCES ... USES ...): one static library for a folder of the viewer. Its include root is its own
# folder, and it sees those of the folders that it USES: an include in the wrong direction does not compile.
function(kel_layer name)
    cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_USES} PRIVATE kel_options)
endfunction()
