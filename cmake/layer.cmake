# kel_include_root(TARGET SCOPE): an include names a file with its room, as "geometry/zoom.h", and the target's include root
# holds that room alone: a link to the folder.
function(kel_include_root target scope)
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/src OUTPUT_VARIABLE room)
    set(root ${PROJECT_BINARY_DIR}/rooms/${target})
    cmake_path(GET room PARENT_PATH above)
    file(MAKE_DIRECTORY ${root}/${above})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${room} SYMBOLIC)
    target_include_directories(${target} ${scope} ${root})
    set(kel_room_folder ${root}/${room} PARENT_SCOPE)
    set(kel_room_root ${root} PARENT_SCOPE)
endfunction()

# kel_headers(TARGET SCOPE FILE...): the headers of a folder under src. The target all_verify_interface_header_sets
# compiles each alone.
function(kel_headers target scope)
    kel_include_root(${target} ${scope})
    list(TRANSFORM ARGN PREPEND ${kel_room_folder}/)
    target_sources(${target} ${scope} FILE_SET HEADERS BASE_DIRS ${kel_room_root} FILES ${ARGN})
endfunction()

# kel_layer(NAME HEADERS ... SOURCES ... USES ...): one static library for a folder of the viewer. It sees itself and the
# folders that it USES: an include in the wrong direction does not compile.
function(kel_layer name)
    cmake_parse_arguments(arg "" "" "HEADERS;SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    kel_headers(${name} PUBLIC ${arg_HEADERS})
    target_link_libraries(${name} PUBLIC ${arg_USES} PRIVATE kel_options)
endfunction()
